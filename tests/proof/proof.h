// The cases of the table of checksums against the slow versions of the effects. Each function checks what a case gave;
// false where the slow version says nothing of it.
#pragma once

#include <optional>
#include <set>

#include "checksums/cases.h"

namespace test {

struct Proved {
    const Case& each;
    const Layout& layout;
    int status;
    HGLOBAL image;
    HGLOBAL mask;

    const Picture& Source() const {
        return each.scene.picture.Content();
    }
    const Picture& Mask() const {
        return each.scene.mask.Content();
    }
    const Picture& Second() const {
        return each.scene.second.Content();
    }
    double Real(std::size_t i) const {
        return each.arguments.values[i].real;
    }
    LONG Number(std::size_t i) const {
        return static_cast<LONG>(each.arguments.values[i].number);
    }
    BYTE Low(std::size_t i) const {
        return static_cast<BYTE>(each.arguments.values[i].number);
    }
    Colour At(std::size_t i) const { // red, green and blue from there on
        return {Low(i + 2), Low(i + 1), Low(i)};
    }
    bool Is(const char* name) const {
        return each.row.name == std::string(name);
    }
    std::optional<std::vector<bool>> Area() const {
        return PixelsOf(each.call.area, Mask(), Source().Width(), Source().Height());
    }
    HGLOBAL Copy() const {
        return image == nullptr ? nullptr : MakeBlock(ReadBlock(image)).release();
    }
};

bool ProveRgb(const Proved& p);
bool ProveYcc(const Proved& p);
bool ProveConversion(const Proved& p);
bool ProveReduction(const Proved& p);
bool ProveFilter(const Proved& p);
bool ProveSpecialFilter(const Proved& p);
bool ProveSelect(const Proved& p);
bool ProveResize(const Proved& p);
bool ProveRotation(const Proved& p);
bool ProveAffine(const Proved& p);
bool ProvePanorama(const Proved& p);
bool ProvePaste(const Proved& p);
bool ProveLayer(const Proved& p);
bool ProveSecret(const Proved& p);
bool ProveImage(const Proved& p);

} // namespace test
