#ifndef QV8_PICTURES_PNG_CODEC_H
#define QV8_PICTURES_PNG_CODEC_H

#include "pictures/codec.h"

LoadedPicture ReadPng(ByteView file, const ReadOptions& options);

#endif
