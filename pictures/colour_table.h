// Colour tables that fit a picture, and the nearest of their entries.
#ifndef QV8_PICTURES_COLOUR_TABLE_H
#define QV8_PICTURES_COLOUR_TABLE_H

#include <array>
#include <vector>

#include "pictures/picture_rows.h"

// Blue, green, red.
using Levels = std::array<int, 3>;

// Row `y` from the top as colours, whatever the picture has.
void ReadColours(PictureRows& rows, std::size_t y, std::vector<Levels>& colours);

// Finds the entry of a table that is nearest to a colour, the first of several. It remembers which few can be it for a
// small cube of colours.
class NearestEntry {
public:
    explicit NearestEntry(const std::vector<RGBQUAD>& table);

    // All levels are from 0 to 255.
    std::size_t Find(const Levels& colour);

private:
    void FindCandidates(std::size_t cube);

    std::vector<Levels> table_;
    std::vector<std::vector<BYTE>> candidates_; // for each cube; empty until it is asked for
};

// The colours of a picture when there are no more than `most`, else nothing.
std::vector<RGBQUAD> AllColours(PictureRows& rows, std::size_t most);

// Moves the entries of a table to where they are best for a picture: each into the middle of the colours that it is
// the nearest to, over and over.
std::vector<RGBQUAD> Fitted(std::vector<RGBQUAD> table, PictureRows& rows);

#endif
