/* From RGB bytes to a picture, through an effect, and back. */
#include <qv8com.h>
#include <qv8effect.h>
#include <stdio.h>

enum { WIDTH = 3, HEIGHT = 2, STRIDE = (WIDTH * 3 + 3) / 4 * 4 };

/* A 24-bit picture: header, no colour table, rows from the bottom up, blue before green before red. */
static HGLOBAL MakePicture(const BYTE* rgb) {
    HGLOBAL picture = GlobalAlloc(GHND, sizeof(BITMAPINFOHEADER) + STRIDE * HEIGHT);
    BITMAPINFOHEADER* header = (BITMAPINFOHEADER*)GlobalLock(picture);
    if (header == NULL)
        return NULL;
    header->biSize = sizeof *header;
    header->biWidth = WIDTH;
    header->biHeight = HEIGHT;
    header->biPlanes = 1;
    header->biBitCount = 24;
    BYTE* rows = (BYTE*)(header + 1);
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x)
            for (int channel = 0; channel < 3; ++channel)
                rows[(HEIGHT - 1 - y) * STRIDE + 3 * x + channel] = rgb[3 * (WIDTH * y + x) + 2 - channel];
    GlobalUnlock(picture);
    return picture;
}

static void PrintPicture(HGLOBAL picture) {
    const BYTE* rows = (const BYTE*)GlobalLock(picture) + sizeof(BITMAPINFOHEADER);
    for (int y = HEIGHT - 1; y >= 0; --y) { /* the last row in memory is the first of the picture */
        for (int x = 0; x < WIDTH; ++x) {
            const BYTE* pixel = rows + y * STRIDE + 3 * x;
            printf("%3d,%3d,%3d  ", pixel[2], pixel[1], pixel[0]);
        }
        printf("\n");
    }
    GlobalUnlock(picture);
}

int main(void) {
    const BYTE rgb[WIDTH * HEIGHT * 3] = {255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 128, 128, 128, 255, 255, 255};
    ImageSet target = {MakePicture(rgb), 0};
    HGLOBAL warmer = QV8RGBLevel(&target, QV8_AREA_WHOLE, 0, 0, 0, 1, 30, 5, -30, 0, 0, 0, 0);
    if (warmer == NULL) {
        fprintf(stderr, "%s\n", GetErrorStatusText(GetErrorStatus()));
        return 1;
    }
    PrintPicture(warmer);
    GlobalFree(warmer);
    GlobalFree(target.hImage);
    return 0;
}
