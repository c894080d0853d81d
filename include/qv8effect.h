/**
 * @file
 * Qv8Effect: effects on pictures held as packed device-independent bitmaps in movable global memory.
 *
 * How parameters are written here: `@param name [unit, range] meaning`. "Clamped" means that a value out of range
 * counts as the nearest one in range, without an error. BYTE and flag arguments arrive in 32-bit slots; of BYTE
 * arguments only the low byte counts, a QV8BOOL or a flag is true when it is not 0. All functions use the standard
 * Windows calling convention and are exported under their plain names. Parameters that many functions have in common
 * are described in this part only.
 *
 * @section pictures Pictures
 * A picture is an HGLOBAL from GlobalAlloc (movable memory) that holds, without gaps, a 40-byte BITMAPINFOHEADER, the
 * colour table and the rows, bottom row first, each padded to a multiple of 4 bytes. Depths are 1, 4, 8 (indices into
 * the colour table), 16 (5-5-5 or 5-6-5), 24 and 32 bits. `biClrUsed` entries are in the table, or the full 2, 16 or
 * 256 when it is 0; an index beyond the table reads as black. Width and height are at least 1.
 *
 * @param image [picture] the picture that the function reads.
 *
 * @section ownership Ownership
 * Pictures passed in are locked and unlocked, never changed and never freed. Pictures returned are new and unlocked;
 * the caller frees them with GlobalFree. Pointers are read during the call only.
 *
 * @section results Results
 * Functions that return HGLOBAL return a new picture, or 0. Functions that return ImageSet return a new picture and its
 * mask, or {0, 0}: in registers, and on 64-bit Windows in a place whose address the caller passes before the first
 * argument, as C compilers do there. Their "Ex" forms store the pair through `result`, {0, 0} on failure, and return 1,
 * or 0 when `hImage` is 0. Why a call failed is told by GetErrorStatus of the companion library (qv8com.h), per thread,
 * as one of the QV8_STATUS values. On every failure all that the call made is freed.
 *
 * @param result [address of an ImageSet] where an Ex form stores the new picture and its mask; status 5 when null. It
 *               may be what `target` points to: the pair is stored when the work has ended, over the handles that
 *               were there, so keep a copy to free them. Without a dialog (2) QV8ResizeEx and QV8RotationEx store
 *               nothing and the handles stay; QV8SelectImageEx and QV8AutoSelectImageEx store {0, 0} then too.
 *
 * @section statuses Statuses
 * Every function can leave: 0 success; 1 cancelled; 2 the progress dialog could not be opened; 3 out of memory, or a
 * result above 0x7FFFFFFF bytes; 7 a picture that is a zero handle, is damaged, or has a depth or layout that the
 * function does not accept. Further statuses stand with each function.
 *
 * @section threads Threads
 * Every function runs to its end on the calling thread. No state is kept between calls, so any number of threads may
 * call at once, on shared source pictures too, and a progress callback may call back into the library. The clipboard is
 * one for all of them; on other systems than Windows it is the process's own and ends with it.
 *
 * @section processor The processor
 * Whatever rounding, precision, flushing and exceptions the caller has set for floating-point numbers, the results are
 * the same and nothing traps. Callbacks and window procedures run in the caller's own state, which is also there again
 * after the call. The status is set last, whatever those have called in between.
 *
 * @section progress Progress
 * The last four arguments of every function with progress say who is told of it and who may cancel.
 *
 * @param progressOwner [number] 0: the library opens the progress dialog of the companion library for this call. Any
 *                      other value: no dialog; the value names who is told of progress and may cancel
 *                      (AddProgressOwner, or on Windows a window handle).
 * @param dialog1 [window] for PercentDlgOpen when `progressOwner` is 0: owner of the dialog, or 0.
 * @param dialog2 [LPCSTR] for PercentDlgOpen when `progressOwner` is 0: caption of the dialog, or 0.
 * @param dialog3 [0] for PercentDlgOpen when `progressOwner` is 0; not used.
 *
 * @section area The area of effect
 * In functions with these arguments, it limits an effect to a part of the picture. What an argument does not use is
 * ignored: area type 1 looks at nothing else. Statuses: 2 the shape could not be drawn; 5 another `areaType`, fewer
 * than 2 points or null points; 7 area type 0 without a mask, or a mask that is not 1-bit or of another size.
 *
 * @param target [address of an ImageSet] the picture and, for area type 0, its mask. Null counts as {0, 0}.
 * @param areaType [0..3; low byte] 0 (QV8_AREA_MASK) the set bits of target->hMask, a 1-bit picture of the same size,
 *                 whatever its colours; 1 (QV8_AREA_WHOLE) the whole picture; 2 (QV8_AREA_POLYGON) a polygon, alternate
 *                 fill, outline included; 3 (QV8_AREA_ELLIPSE) an ellipse.
 * @param points [pixels, y counted from the top] corners of the polygon; moved to the nearest edge where outside.
 * @param pointCount [number, at least 2] of corners.
 * @param rect [pixels, y counted from the top] bounding rectangle of the ellipse, right and bottom excluded; cut to the
 *             picture; either order of its sides. Null counts as all zeros.
 *             On Windows the system draws the ellipse, and whether it fills the outermost rows of one much taller than
 *             wide (5 x 600, or 3 wide and 8 high) is its affair; elsewhere the one or two columns in the middle go up
 *             to both ends. All other shapes are the same everywhere.
 * @param inside [flag] set: the effect applies inside the polygon or ellipse; 0: outside it.
 */
#ifndef QV8EFFECT_H
#define QV8EFFECT_H

#include "qv8platform.h"

#ifdef _WIN32
#define QV8EFFECT_EXPORT
#else
#define QV8EFFECT_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** A picture and the 1-bit picture of the same size that marks an area of it (0 when there is none). */
typedef struct ImageSet {
    HGLOBAL hImage;
    HGLOBAL hMask;
} ImageSet;

/** Why a call failed: GetErrorStatus of the companion library tells it. */
enum {
    QV8_STATUS_SUCCESS = 0,
    QV8_STATUS_CANCELLED = 1, /**< the user or the progress owner asked to stop */
    QV8_STATUS_DIALOG = 2,    /**< no progress dialog, or an area could not be drawn */
    QV8_STATUS_MEMORY = 3,    /**< out of memory, or a size above 0x7FFFFFFF bytes */
    QV8_STATUS_DEPTH = 4,     /**< bit depth not handled */
    QV8_STATUS_PARAMETER = 5, /**< bad parameter */
    QV8_STATUS_PICTURE = 7,   /**< bad picture */
    QV8_STATUS_DRAWING = 9    /**< a drawing operation failed */
};

/** Types of area. */
enum { QV8_AREA_MASK = 0, QV8_AREA_WHOLE = 1, QV8_AREA_POLYGON = 2, QV8_AREA_ELLIPSE = 3 };

/** Depth code of QV8ConvertColor for 8 bits with a grey ramp. */
enum { QV8_DEPTH_GREY = 80 };

/**
 * @name Tone and colour
 * All depths. Pictures of 1, 4 and 8 bits change in their colour table as a whole, whatever the area (which is not even
 * checked). 16-bit channels go through 8 bits and back, truncating, so that a channel may lose one level. The fourth
 * byte of 32-bit pixels stays, but for QV8SetGray.
 * @{
 */

/**
 * Pulls each channel toward or away from its square root: v becomes 255 (x - g (sqrt(x) - x)) with x = v / 255.
 * @param gammaRed,gammaGreen,gammaBlue [strength g of the curve, any number] 0 leaves the channel, below 0 lightens,
 *   above 0 darkens.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8RGBGamma(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                            const RECT* rect, QV8BOOL inside, double gammaRed, double gammaGreen,
                                            double gammaBlue, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                            DWORD_PTR dialog3);

/**
 * Adds a level to each channel and clamps to 0..255.
 * @param levelRed,levelGreen,levelBlue [levels, any number] 0 leaves the channel.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8RGBLevel(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                            const RECT* rect, QV8BOOL inside, LONG levelRed, LONG levelGreen,
                                            LONG levelBlue, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                            DWORD_PTR dialog3);

/**
 * Turns each channel v whose flag is set into 255 - v.
 * @param invertRed,invertGreen,invertBlue [flag] the channels to invert.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8RGBRev(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                          const RECT* rect, QV8BOOL inside, QV8BOOL invertRed, QV8BOOL invertGreen,
                                          QV8BOOL invertBlue, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                          DWORD_PTR dialog3);

/**
 * The curve of QV8RGBGamma on luminance, red difference and blue difference (in this order).
 * @param gammaY,gammaCr,gammaCb [strength of the curve, any number] 0 leaves the component, but for the rounding of the
 *   way there and back.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8YCCGamma(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                            const RECT* rect, QV8BOOL inside, double gammaY, double gammaCr,
                                            double gammaCb, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                            DWORD_PTR dialog3);

/**
 * Adds a level to luminance, red difference and blue difference (in this order); only the final colour is clamped.
 * @param levelY,levelCr,levelCb [levels, any number] 0 leaves the component, but for the rounding of the way there and
 *   back.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8YCCLevel(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                            const RECT* rect, QV8BOOL inside, LONG levelY, LONG levelCr, LONG levelCb,
                                            DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                            DWORD_PTR dialog3);

/**
 * Inverts luminance, red difference and blue difference (in this order) where the flag is set.
 * @param invertY,invertCr,invertCb [flag] the components to invert.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8YCCRev(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                          const RECT* rect, QV8BOOL inside, QV8BOOL invertY, QV8BOOL invertCr,
                                          QV8BOOL invertCb, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                          DWORD_PTR dialog3);

/**
 * Strengthens or weakens colour.
 * @param chroma [percent, -100 (grey) .. 1000; clamped] the change; 0 returns an exact copy.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8Chroma(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                          const RECT* rect, QV8BOOL inside, LONG chroma, DWORD progressOwner,
                                          DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3);

/**
 * Turns the whole picture grey at its own depth. Pictures of 1, 4 and 8 bits get a full grey ramp as their table, and
 * `biClrUsed` becomes 0 unless it was the full count. Unlike the other effects of this family it sets the fourth byte
 * of 32-bit pixels to 0.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8SetGray(HGLOBAL image, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                           DWORD_PTR dialog3);

/** @} */

/**
 * @name Depth
 * @{
 */

/**
 * Converts the picture to another depth. 16-bit results are always 5-5-5.
 * @param bitDepth [bits: 1, 4, 8, 16, 24, 32, or QV8_DEPTH_GREY (80); low 16 bits] depth of the result; QV8_DEPTH_GREY
 *   is 8 bits with a grey ramp.
 * @param fixedPalette [flag] set: reduce to a fixed table (16 or 216 colours). 0: to one built from the picture, 16 or
 *   256 colours by median cut from 16 bits on, the 16 most used ones from 8 bits. Results of 1 bit and of grey have
 *   fixed tables in any case.
 * @param dither [flag] spread the error of each pixel over its neighbours while reducing.
 * @param threshold [level, 0..255] black/white threshold of a 1-bit result: white from a mean of this value on.
 *
 * A reduction to 256 colours built from the picture shows stray pixels, of the first colour of the table, where a
 * colour falls beside all of its boxes, and with dithering each of them may draw a streak behind it, most of all in
 * soft gradients. The fixed table and 16 colours have none. The fourth bytes of a 32-bit result are 0.
 * @par Statuses
 * 3 also when a reduction is wider than about 89 million pixels, as its working rows are one block; 5 another depth, or
 * the depth the picture has; 7 also for a picture of a depth that does not exist, and for 16 bits with channel masks
 * other than 5-5-5 and 5-6-5, whatever the wanted depth. A zero handle returns 0 and leaves the status alone.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8ConvertColor(HGLOBAL image, DWORD bitDepth, QV8BOOL fixedPalette, QV8BOOL dither,
                                                DWORD threshold, DWORD progressOwner, DWORD_PTR dialog1,
                                                DWORD_PTR dialog2, DWORD_PTR dialog3);

/** @} */

/**
 * @name Filters
 * 8-bit pictures with a grey ramp as their table (in any order), 16, 24 and 32 bits; QV8Mosaic takes all depths.
 * Neighbours are read from the source, also outside the area. 16-bit pixels of the area are repacked from 8 bits per
 * channel, truncating, and may lose a level; QV8RemoveNoise does so in mode 1 only.
 * @{
 */

/**
 * Convolves with a 9 x 9 kernel; border pixels repeat outward.
 * @param kernel [81 weights, any numbers] the row above first, left to right; the centre is the 41st.
 * @param divisor [1..255; low byte] divides the sum (truncating).
 * @param offset [level, 0..255; low byte] added after the division.
 * @param red,green,blue [flag] the channels to filter (an 8-bit picture is always filtered).
 * @par Statuses
 * 5 null kernel or a divisor of 0.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8CustomFilter(const ImageSet* target, DWORD areaType, const POINT* points,
                                                int pointCount, const RECT* rect, QV8BOOL inside, const LONG* kernel,
                                                DWORD divisor, DWORD offset, QV8BOOL red, QV8BOOL green, QV8BOOL blue,
                                                DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                                DWORD_PTR dialog3);

/**
 * Sharpens the luminance.
 * @param strength [0..100, clamped; low byte] how much. At 0 too colours pass through luminance and colour differences,
 *   and may change by a level.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8Sharp(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                         const RECT* rect, QV8BOOL inside, DWORD strength, DWORD progressOwner,
                                         DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3);

/**
 * Turns the picture into a relief.
 * @param direction [eighths of a turn, 0..7; low byte] where the relief is lit: 0 right, 1 lower right, then clockwise.
 * @param depth [1 (flat) .. 5 (deep), clamped; low byte] of the relief.
 * @param base [level, 0..255; low byte] of even surfaces.
 * @par Statuses
 * 5 another direction.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8Emboss(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                          const RECT* rect, QV8BOOL inside, DWORD direction, DWORD depth, DWORD base,
                                          DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3);

/**
 * Softens with the mean of a square.
 * @param radius [pixels, 1..20, clamped; low byte] from the middle of the square to its edge.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8Shade(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                         const RECT* rect, QV8BOOL inside, DWORD radius, DWORD progressOwner,
                                         DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3);

/**
 * Removes noise with the median of the 3 x 3 neighbourhood.
 * @param mode [0 or 1; low byte] 0 whole pixels by luminance; 1 each channel that differs from a neighbour by more than
 *   255 - sensitivity; anything else returns a copy.
 * @param sensitivity [level, 0..255; low byte] for mode 1.
 *
 * Mode 0 of an 8-bit picture stores the level found as the index: it wants the levels of the table in order.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8RemoveNoise(const ImageSet* target, DWORD areaType, const POINT* points,
                                               int pointCount, const RECT* rect, QV8BOOL inside, DWORD mode,
                                               DWORD sensitivity, DWORD progressOwner, DWORD_PTR dialog1,
                                               DWORD_PTR dialog2, DWORD_PTR dialog3);

/** Averages each pixel with its left and right neighbours. */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8AntiAlias(const ImageSet* target, DWORD areaType, const POINT* points,
                                             int pointCount, const RECT* rect, QV8BOOL inside, DWORD progressOwner,
                                             DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3);

/**
 * Paints blocks with their mean colour; all depths. Blocks begin at the lower left corner of the area's bounding box;
 * the mean is of all of a block's pixels, also those outside the area. A row of blocks is one step of the work:
 * progress is told, and a cancel heard, when it is done.
 * @param blockWidth,blockHeight [pixels, any number] size of a block; one of them below 2 counts as 1.
 * @par Statuses
 * 5 both below 2.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8Mosaic(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                          const RECT* rect, QV8BOOL inside, int blockWidth, int blockHeight,
                                          DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3);

/**
 * Draws the edges as grey levels.
 * @param channel [0..3; low byte] where edges are looked for: 0 luminance, 1 red, 2 green, 3 blue.
 * @param edgeOperator [0..2; low byte] 0 simple difference, 2 Sobel, anything else Roberts cross.
 * @param gain [factor, 0..100, clamped; low byte] on the edge strength.
 * @par Statuses
 * 5 another channel.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8Outline(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                           const RECT* rect, QV8BOOL inside, DWORD channel, DWORD edgeOperator,
                                           DWORD gain, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                           DWORD_PTR dialog3);

/** @} */

/**
 * @name Selection
 * All depths. The area arguments are as above, without area type 0 (status 5). The result has the size of the area's
 * bounding box; its mask marks the area.
 * @{
 */

/**
 * Cuts an area out.
 * @param red,green,blue [level, 0..255; low byte] background colour, for pixels of the box outside the area.
 */
QV8EFFECT_EXPORT ImageSet QV8API QV8SelectImage(HGLOBAL image, DWORD areaType, const POINT* points, int pointCount,
                                                const RECT* rect, QV8BOOL inside, DWORD red, DWORD green, DWORD blue,
                                                DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                                DWORD_PTR dialog3);

/**
 * As QV8SelectImage, storing the pair through `result`; status 5 when that is null.
 * @copydetails QV8SelectImage
 */
QV8EFFECT_EXPORT QV8BOOL QV8API QV8SelectImageEx(HGLOBAL image, ImageSet* result, DWORD areaType, const POINT* points,
                                                 int pointCount, const RECT* rect, QV8BOOL inside, DWORD red,
                                                 DWORD green, DWORD blue, DWORD progressOwner, DWORD_PTR dialog1,
                                                 DWORD_PTR dialog2, DWORD_PTR dialog3);

/**
 * Cuts an area out and marks in its mask the pixels whose colour is close to a key colour.
 * @param red,green,blue [level, 0..255; low byte] key colour.
 * @param matchMode [0..2; low byte] 0 in red, green and blue; 1 in colour whatever the brightness; 2 in brightness.
 * @param tolerance [level, 0..255; low byte] mean difference per component that still matches.
 * @par Statuses
 * 5 another match mode.
 */
QV8EFFECT_EXPORT ImageSet QV8API QV8AutoSelectImage(HGLOBAL image, DWORD areaType, const POINT* points, int pointCount,
                                                    const RECT* rect, QV8BOOL inside, DWORD red, DWORD green,
                                                    DWORD blue, DWORD matchMode, DWORD tolerance, DWORD progressOwner,
                                                    DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3);

/**
 * As QV8AutoSelectImage, storing the pair through `result`; status 5 when that is null.
 * @copydetails QV8AutoSelectImage
 */
QV8EFFECT_EXPORT QV8BOOL QV8API QV8AutoSelectImageEx(HGLOBAL image, ImageSet* result, DWORD areaType,
                                                     const POINT* points, int pointCount, const RECT* rect,
                                                     QV8BOOL inside, DWORD red, DWORD green, DWORD blue,
                                                     DWORD matchMode, DWORD tolerance, DWORD progressOwner,
                                                     DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3);

/** @} */

/**
 * @name Geometry
 * All depths; a mask in `target` (null or a 1-bit picture of the same size, else status 7) goes through the same change
 * and comes back as the result's mask.
 * @{
 */

/**
 * Scales to a new size.
 * @param target [address of an ImageSet] the picture and its mask, or 0 in place of the mask. Null counts as {0, 0}.
 * @param width,height [pixels, at least 1] size of the result.
 * @param smooth [flag] 0 repeats or drops pixels, non-zero blends them (16, 24, 32 bits and grey ramps). Blended, the
 *   fourth byte of every 32-bit pixel of the result is 0; repeated and dropped pixels keep theirs.
 * @par Statuses
 * 5 a width or height below 1.
 */
QV8EFFECT_EXPORT ImageSet QV8API QV8Resize(const ImageSet* target, int width, int height, DWORD smooth,
                                           DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                           DWORD_PTR dialog3);

/**
 * As QV8Resize, storing the pair through `result`; status 5 when that is null.
 * @copydetails QV8Resize
 */
QV8EFFECT_EXPORT QV8BOOL QV8API QV8ResizeEx(const ImageSet* target, ImageSet* result, int width, int height,
                                            DWORD smooth, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                            DWORD_PTR dialog3);

/**
 * Mirrors, flips, then turns about the centre.
 * @param target [address of an ImageSet] the picture and its mask, or 0 in place of the mask. Null counts as {0, 0}.
 * @param angle [hundredths of a degree, -35999..35999, clamped] positive turns counter-clockwise. Whole quarter turns
 *   copy pixels as they are.
 * @param mirror,flip [flag] exchange left and right, top and bottom, first.
 * @param smooth [flag] set: blend neighbouring pixels (16, 24, 32 bits and grey ramps), 0: take the nearest.
 * @param red,green,blue [level, 0..255; low byte] colour of pixels that the turned picture does not cover. In pictures
 *   with a colour table the nearest entry, the first of equal ones.
 * @param keepSize [flag] set: the result has the source's size; 0: it is large enough for the turned picture.
 *
 * The fourth byte of every 32-bit pixel of the result is 0.
 * @par Statuses
 * 3 also when the result would be too large.
 */
QV8EFFECT_EXPORT ImageSet QV8API QV8Rotation(const ImageSet* target, LONG angle, QV8BOOL mirror, QV8BOOL flip,
                                             DWORD smooth, DWORD red, DWORD green, DWORD blue, QV8BOOL keepSize,
                                             DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                             DWORD_PTR dialog3);

/**
 * As QV8Rotation, storing the pair through `result`; status 5 when that is null.
 * @copydetails QV8Rotation
 */
QV8EFFECT_EXPORT QV8BOOL QV8API QV8RotationEx(const ImageSet* target, ImageSet* result, LONG angle, QV8BOOL mirror,
                                              QV8BOOL flip, DWORD smooth, DWORD red, DWORD green, DWORD blue,
                                              QV8BOOL keepSize, DWORD progressOwner, DWORD_PTR dialog1,
                                              DWORD_PTR dialog2, DWORD_PTR dialog3);

/**
 * Straightens a four-cornered area into an upright picture.
 * @param x1,y1,x2,y2,x3,y3,x4,y4 [pixels, y counted from the top] the corners, in any order; moved to the nearest edge
 *   where outside.
 *
 * The result is the largest upright rectangle that fits between the edges. Every pixel of the area is written to its
 * place there and to the ones right of and above it; pixels that none reaches stay 0, and so do the fourth bytes of
 * 32-bit pixels. Rows are read from the one above, row 0 from outside the picture: 0. Channels of 16-bit pixels that
 * are neither 0 nor full mostly lose a level. Where no edge leans by more than 2 pixels the area is copied as it is.
 * Progress names rows of the source: it begins at the first row of the area and may go beyond 100 percent.
 * @par Statuses
 * 5 corners that leave no rectangle. The status stays what it was when the two edges at the lower left corner are on
 * one line; the result is 0 then too.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8Affine(HGLOBAL image, LONG x1, LONG y1, LONG x2, LONG y2, LONG x3, LONG y3, LONG x4,
                                          LONG y4, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                          DWORD_PTR dialog3);

/**
 * Joins a second picture onto a base, both 24-bit: scales it until two points of it are as far from each other as two
 * points of the base, turns it into their direction and pastes it, blending pixels, with the first point on the first.
 * The result has the base's size. Lengths count in whole pixels and angles in hundredths of a degree.
 * @param base [picture, 24 bits] that is joined onto.
 * @param added [picture, 24 bits] that is joined.
 * @param seamMode [0..2; low byte] 1 pastes only what lies left of the way from the first point to the second, 2 what
 *   lies right of it, both with the line itself; anything else pastes the whole picture. A steep line may end inside
 *   the picture, and then both sides are one.
 * @param a1x,a1y,a2x,a2y [pixels, y counted from the top] the points in the base; moved to the nearest edge where
 *   outside.
 * @param b1x,b1y,b2x,b2y [pixels, y counted from the top] the matching points in the added picture.
 * @param transparentRed,transparentGreen,transparentBlue [addresses of levels, 0..255] the transparent colour as in
 *   QV8PasteImage, or null.
 * @par Statuses
 * 2 also when the seam could not be drawn; 5 two equal points, or the scaled picture has less than a pixel.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8Panorama(HGLOBAL base, HGLOBAL added, DWORD seamMode, LONG a1x, LONG a1y, LONG a2x,
                                            LONG a2y, LONG b1x, LONG b1y, LONG b2x, LONG b2y,
                                            const BYTE* transparentRed, const BYTE* transparentGreen,
                                            const BYTE* transparentBlue, DWORD progressOwner, DWORD_PTR dialog1,
                                            DWORD_PTR dialog2, DWORD_PTR dialog3);

/** @} */

/**
 * @name Composition
 * @{
 */

/**
 * Pastes a picture, turned and through its mask, onto a base; all depths onto all depths. The result is a copy of the
 * base with what is seen of the picture in the base's format: the nearest entry of a colour table; fourth bytes stay.
 * @param base [picture] that is pasted onto.
 * @param pasted [address of an ImageSet] the picture and its mask, a 1-bit picture of the same size (or 0); set bits
 *   are pasted.
 * @param angle [hundredths of a degree, -35999..35999, clamped] positive turns counter-clockwise. Turns by quarters
 *   copy pixels as they are.
 * @param mirror,flip [flag] exchange left and right, top and bottom, first.
 * @param opacity [0 (invisible) .. 255; low byte] of what is pasted.
 * @param transparentRed,transparentGreen,transparentBlue [addresses of levels, 0..255] when none is null, pixels of the
 *   picture of exactly this colour let the base show.
 * @param x,y [pixels, any number, y counted from the top] where the middle of the turned picture comes to lie in the
 *   base. The middle of w x h pixels is column (w - 1) / 2 and row (h - 1) / 2, both rounded down.
 * @param sampling [flag] 0 blends the neighbouring pixels of a picture with grey levels or true colour that is turned
 *   by no whole quarters, and at the edge of the picture or of what its mask and the transparent colour leave of it
 *   those of the base; non-zero takes the nearest pixel.
 * @par Statuses
 * 7 also for a mask that is not 1-bit or of another size.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8PasteImage(HGLOBAL base, const ImageSet* pasted, LONG angle, QV8BOOL mirror,
                                              QV8BOOL flip, DWORD opacity, const BYTE* transparentRed,
                                              const BYTE* transparentGreen, const BYTE* transparentBlue, LONG x, LONG y,
                                              DWORD sampling, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                              DWORD_PTR dialog3);

/**
 * Lays one picture over another; all depths, the result is 24-bit.
 * @param base [picture] that lies below.
 * @param layer [picture] that lies above.
 * @param opacity [0 (layer invisible) .. 255 (layer replaces the base); low byte] of the layer.
 * @param transparentRed,transparentGreen,transparentBlue [level, 0..255; low byte] layer pixels of exactly this colour
 *   let the base show.
 * @param backgroundRed,backgroundGreen,backgroundBlue [level, 0..255; low byte] colour where neither picture lies.
 * @param x,y [pixels, any number, y counted from the top] upper left corner of the layer in the base.
 * @param clipToBase [flag] set: the result has the base's size; 0: it covers both pictures.
 * @par Statuses
 * 4 a picture with a depth or layout that is not accepted.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8Layer(HGLOBAL base, HGLOBAL layer, DWORD opacity, DWORD transparentRed,
                                         DWORD transparentGreen, DWORD transparentBlue, DWORD backgroundRed,
                                         DWORD backgroundGreen, DWORD backgroundBlue, int x, int y, QV8BOOL clipToBase,
                                         DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3);

/** @} */

/**
 * @name Creation
 * @{
 */

/**
 * Makes a picture of one colour.
 * @param width,height [pixels, at least 1, clamped] size of the picture.
 * @param bitDepth [bits: 1, 4, 8, 16, 24 or 32; low 16 bits, signed] its depth.
 * @param red,green,blue [level, 0..255; low byte] the colour, or the nearest the depth can show.
 * @par Statuses
 * 4 another depth.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8CreateImage(int width, int height, DWORD bitDepth, DWORD red, DWORD green,
                                               DWORD blue, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                               DWORD_PTR dialog3);

/** Makes an exact copy of a picture. */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8CopyImage(HGLOBAL image, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                             DWORD_PTR dialog3);

/** @} */

/**
 * @name Clipboard
 * @{
 */

/**
 * Puts a copy of a picture on the clipboard as CF_DIB, in place of all that it holds. The picture stays the caller's.
 * @param window [window] owner of the clipboard while it is open, or 0.
 *
 * The copy has the picture's header, colour table and rows. The channel masks of a 16- or 32-bit BI_BITFIELDS picture
 * with a 40-byte header are left out, though its header still says BI_BITFIELDS: convert such a picture to 24 bits
 * where other programs are to read it. A picture from QV8GetFromClipBrd with a longer header is put back as it came:
 * here, unlike elsewhere, the header is as long as its `biSize` says. The clipboard is open only after the last
 * progress report, of which each counts the rows done before it out of all rows.
 * @return 1, or 0 on failure.
 * @par Statuses
 * 3 also when the clipboard does not take the copy, as while another program has it open; 7 also for a picture that
 * cannot be locked or whose `biSize` is below 40 or beyond the block.
 */
QV8EFFECT_EXPORT QV8BOOL QV8API QV8SetToClipBrd(HWND window, HGLOBAL image, DWORD progressOwner, DWORD_PTR dialog1,
                                                DWORD_PTR dialog2, DWORD_PTR dialog3);

/**
 * Makes a copy of the picture that the clipboard holds as CF_DIB; the clipboard keeps its own.
 * @param window [window] owner of the clipboard while it is open, or 0.
 *
 * The copy has the header as it was found, the 12 bytes of channel masks behind a 40-byte BI_BITFIELDS header of 16 or
 * 32 bits, the colour table and the rows. Rows that stand top-down (a height below 0) are turned bottom-up, and the
 * height is made positive. A header of more than 40 bytes is kept with its `biSize`; the other functions do not look at
 * `biSize` and take what follows the first 40 bytes for colour table and rows, so a program removes the rest of the
 * header before it uses such a picture with them. The clipboard is open during the progress reports.
 * @par Statuses
 * 7 when the clipboard holds no CF_DIB data, another program has it open, or the data cannot be a picture: a block
 * shorter than its header says, a header of less than 40 bytes, a width below 1, a height of 0, an unknown depth, or a
 * compression other than BI_RGB and BI_BITFIELDS.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8GetFromClipBrd(HWND window, DWORD progressOwner, DWORD_PTR dialog1,
                                                  DWORD_PTR dialog2, DWORD_PTR dialog3);

/**
 * Tells whether the clipboard holds CF_DIB data, a sound picture or not.
 * @param window [window] owner of the clipboard while it is open, or 0.
 * @return non-zero when it does; 0 otherwise, and also while another program has it open.
 * @par Statuses
 * 0 in any case. There is no progress.
 */
QV8EFFECT_EXPORT QV8BOOL QV8API QV8IsClipBrdData(HWND window);

/**
 * Takes everything off the clipboard.
 * @param window [window] owner of the clipboard while it is open, or 0.
 * @return the result of closing it: non-zero, or 0 when it could not be opened, as while another program has it open.
 * @par Statuses
 * 0 in any case. There is no progress.
 */
QV8EFFECT_EXPORT QV8BOOL QV8API QV8ClearClipBrd(HWND window);

/** @} */

/**
 * @name Hidden marks
 * @{
 */

/**
 * Hides a pattern or a text in the luminance of a 24-bit picture. The luminance of the pixels under the set bits of the
 * pattern, or under the text, changes by `strength`; a pixel whose luminance would leave 0..255 keeps it. All these
 * pixels go to luminance and colour differences and back, and the way back truncates: a mark of strength s is found
 * again at threshold s - 1, for the most part not at s. A negative strength darkens; QV8CheckSecretImage finds such a
 * mark with its two pictures exchanged.
 * @param picture [picture, 1 bit] pattern, laid with its upper left corner at (left, top), or 0 to draw the text. What
 *   lies outside of the picture is left out.
 * @param text [at most 128 characters (else status 5)] in Shift-JIS, whose first half is ASCII; a
 *   line feed begins a line.
 * @param faceName [at most 32 characters (else status 5)] font; null or empty: whichever font the system prefers.
 * @param pointSize [points; low 16 bits] size of the font.
 * @param bold,italic,underline,strikeOut [flag; low byte] how the text is drawn. The last two are for horizontal text
 *   without line breaks.
 * @param direction [0..2; low byte] 0 and 1 horizontal, anything else sets characters below one another, in columns
 *   from right to left.
 * @param angle [degrees anticlockwise: 0, 90, 180 or 270; low 16 bits] any other counts as 0. The text, or all of its
 *   columns together, begins in the corner of the rectangle where reading begins at that angle: upper left, lower left,
 *   lower right, upper right. Further lines follow in the way of reading.
 * @param strength [levels, any number] change of the luminance; beyond -255..255 no pixel can take it.
 * @param left,top,right,bottom [pixels, y counted from the top] rectangle of the text, all four included; cut to the
 *   picture, either order of its sides. What leaves it is cut. Of these a pattern uses left and top.
 *
 * The text is not smoothed; how characters look is up to the fonts of the system.
 * @par Statuses
 * 2 also when there is nothing to draw the text on; 5 see above, or null text; 9 there is no font, or the text could
 * not be drawn.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8SetSecretImage(HGLOBAL image, HGLOBAL picture, LPCSTR text, LPCSTR faceName,
                                                  DWORD pointSize, DWORD bold, DWORD italic, DWORD underline,
                                                  DWORD strikeOut, DWORD direction, DWORD angle, int strength, int left,
                                                  int top, int right, int bottom, DWORD progressOwner,
                                                  DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3);

/**
 * Finds a hidden pattern by comparing a marked picture with the unmarked one. The result is a 1-bit picture: white
 * where the luminance has risen.
 * @param unmarked,marked [picture, 24 bits] of the same size.
 * @param threshold [levels, any number] rise of luminance from which on a pixel counts as marked: s - 1 for a mark of
 *   strength s.
 * @par Statuses
 * 7 also when the two differ in size.
 */
QV8EFFECT_EXPORT HGLOBAL QV8API QV8CheckSecretImage(HGLOBAL unmarked, HGLOBAL marked, int threshold,
                                                    DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                                    DWORD_PTR dialog3);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* QV8EFFECT_H */
