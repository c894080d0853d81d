#include "hidden/text_pattern.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "area/mask_canvas.h"
#include "frame/status.h"
#include "platform/characters.h"

namespace qv8 {
namespace {

constexpr int kMaxCharacters = 128;
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);

// One character of the text, or all of a text that is drawn in one go.
struct Piece {
    const char* begin;
    int bytes;
    int line;
    SIZE extent;
    POINT place; // of its upper left corner as it is read
};

struct Pieces {
    Piece items[kMaxCharacters];
    int count = 0;
    int lines = 1;

    std::span<Piece> All() {
        return {items, static_cast<std::size_t>(count)};
    }
};

bool Measure(HDC context, const char* text, Pieces& pieces) {
    for (const char* at = text; *at != '\0';) {
        if (*at == '\n') {
            ++pieces.lines;
            ++at;
            continue;
        }
        const int bytes = IsLeadByte(*at) && at[1] != '\0' ? 2 : 1;
        Piece& piece = pieces.items[pieces.count++];
        piece = {at, bytes, pieces.lines - 1, {0, 0}, {0, 0}};
        if (GetTextExtentPoint32A(context, at, bytes, &piece.extent) == FALSE) {
            return false;
        }
        at += bytes;
    }
    return true;
}

// The corner of a box where reading begins at an angle.
POINT ReadingCorner(int angle, LONG width, LONG height) {
    switch (angle) {
    case 90:
        return {0, height};
    case 180:
        return {width, height};
    case 270:
        return {width, 0};
    default:
        return {0, 0};
    }
}

// Where one comes from a place by going `along` the line and `down` to further lines.
POINT Walk(POINT from, int angle, LONG along, LONG down) {
    switch (angle) {
    case 90:
        return {from.x + down, from.y - along};
    case 180:
        return {from.x - along, from.y - down};
    case 270:
        return {from.x - down, from.y + along};
    default:
        return {from.x + along, from.y + down};
    }
}

void PlaceLines(Pieces& pieces, int angle, SIZE box) {
    const POINT corner = ReadingCorner(angle, box.cx, box.cy);
    LONG along = 0;
    int line = 0;
    for (Piece& piece : pieces.All()) {
        along = piece.line == line ? along : 0;
        line = piece.line;
        piece.place = Walk(corner, angle, along, line * piece.extent.cy);
        along += piece.extent.cx;
    }
}

// The space that a turned character takes.
SIZE TurnedExtent(const Piece& piece, int angle) {
    const SIZE& extent = piece.extent;
    return angle == 90 || angle == 270 ? SIZE{extent.cy, extent.cx} : extent;
}

// The columns as a whole begin in the reading corner; among them the first is the rightmost.
void PlaceColumns(Pieces& pieces, int angle, SIZE box) {
    LONG tops[kMaxCharacters];
    LONG down = 0;
    SIZE all = {0, 0};
    int column = 0;
    for (int i = 0; i != pieces.count; ++i) {
        const Piece& piece = pieces.items[i];
        down = piece.line == column ? down : 0;
        column = piece.line;
        tops[i] = down;
        down += TurnedExtent(piece, angle).cy;
        all = {pieces.lines * piece.extent.cy, std::max(all.cy, down)};
    }
    const POINT corner = ReadingCorner(angle, box.cx, box.cy);
    const POINT inAll = ReadingCorner(angle, all.cx, all.cy);
    for (int i = 0; i != pieces.count; ++i) {
        Piece& piece = pieces.items[i];
        const SIZE extent = TurnedExtent(piece, angle);
        const POINT inPiece = ReadingCorner(angle, extent.cx, extent.cy);
        const LONG left = all.cx - (piece.line + 1) * piece.extent.cy;
        piece.place = {corner.x - inAll.x + left + inPiece.x, corner.y - inAll.y + tops[i] + inPiece.y};
    }
}

bool DrawPiece(HDC context, const Piece& piece, UINT format) {
    // The platform takes an ampersand as a mark on the next character, and two of them as one.
    char text[2 * kMaxCharacters];
    int bytes = 0;
    for (int i = 0; i != piece.bytes; ++i) {
        text[bytes++] = piece.begin[i];
        if (piece.begin[i] == '&') {
            text[bytes++] = '&';
        }
    }
    const POINT& place = piece.place;
    RECT rect = {place.x, place.y, place.x + piece.extent.cx, place.y + piece.extent.cy};
    return DrawTextA(context, text, bytes, &rect, DT_NOCLIP | format) != 0;
}

bool IsSingleLine(const char* text, const TextStyle& style) {
    return !style.vertical && std::strchr(text, '\n') == nullptr;
}

bool DrawPieces(HDC context, const char* text, const TextStyle& style, SIZE box) {
    Pieces pieces;
    if (!Measure(context, text, pieces)) {
        return false;
    }
    if (style.vertical) {
        PlaceColumns(pieces, style.angle, box);
    } else {
        PlaceLines(pieces, style.angle, box);
    }
    if (!IsSingleLine(text, style)) {
        const std::span<Piece> all = pieces.All();
        return std::all_of(all.begin(), all.end(),
                           [context](const Piece& piece) { return DrawPiece(context, piece, 0); });
    }
    if (pieces.count == 0) {
        return true;
    }
    Piece whole = pieces.items[0];
    whole.bytes = static_cast<int>(std::strlen(text));
    return DrawPiece(context, whole, DT_SINGLELINE);
}

LONG EscapementOf(int angle) {
    return angle == 90 || angle == 180 || angle == 270 ? angle * 10 : 0;
}

LOGFONTA FontFor(HDC context, const char* faceName, const TextStyle& style, bool isSingleLine) {
    LOGFONTA font = {};
    font.lfHeight = -MulDiv(style.pointSize, GetDeviceCaps(context, LOGPIXELSY), 72);
    font.lfEscapement = EscapementOf(style.angle);
    font.lfWeight = style.bold ? FW_BOLD : FW_NORMAL;
    font.lfItalic = style.italic ? TRUE : FALSE;
    font.lfUnderline = style.underline && isSingleLine ? TRUE : FALSE;
    font.lfStrikeOut = style.strikeOut && isSingleLine ? TRUE : FALSE;
    font.lfCharSet = SHIFTJIS_CHARSET;
    font.lfOutPrecision = OUT_STROKE_PRECIS;
    font.lfClipPrecision = CLIP_STROKE_PRECIS;
    font.lfQuality = DEFAULT_QUALITY;
    font.lfPitchAndFamily = DEFAULT_PITCH | FF_DONTCARE;
    std::memcpy(font.lfFaceName, faceName, std::min<std::size_t>(std::strlen(faceName), LF_FACESIZE - 1));
    return font;
}

bool SetColours(HDC context) {
    return SetTextColor(context, kWhite) != CLR_INVALID && SetBkColor(context, kBlack) != CLR_INVALID &&
           SetBkMode(context, OPAQUE) != 0;
}

} // namespace

bool DrawTextPattern(HGLOBAL pattern, const char* text, const char* faceName, const TextStyle& style) {
    DrawingObject<HFONT> font; // goes after the context that it is selected into
    // On a monochrome bitmap no platform smooths the edges of characters.
    MaskCanvas canvas(pattern, CanvasColours::kMonochrome);
    if (!canvas.IsReady()) {
        return Fail(canvas.IsLocked() ? QV8_STATUS_DIALOG : QV8_STATUS_MEMORY);
    }
    auto* const context = canvas.Context();
    const LOGFONTA description = FontFor(context, faceName, style, IsSingleLine(text, style));
    font.reset(CreateFontIndirectA(&description));
    if (!font || !canvas.WriteBits()) {
        return Fail(QV8_STATUS_DRAWING);
    }
    const Selection selection = Select(context, font.get());
    const bool drawn = selection != nullptr && SetColours(context) && DrawPieces(context, text, style, canvas.Size());
    return (drawn && canvas.ReadBack()) || Fail(QV8_STATUS_DRAWING);
}

} // namespace qv8
