// Picture files of all the formats that are known, in files, streams and memory.
#ifndef QV8_PICTURES_IMAGE_FILE_H
#define QV8_PICTURES_IMAGE_FILE_H

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "pictures/formats.h"
#include "pictures/output_file.h"

// "PNG".
const char* FormatName(ImageFormat format);

// The endings of names that ask for a format: ".bmp, .png, .jpg, .jpeg, .tif, .tiff, .webp".
std::string KnownEndings();

// The format that the ending of a name asks for. Throws a Failure with kExitUsage when it is not a known one.
ImageFormat FormatForName(const std::string& name);

// The same for the name of a format or its ending without the dot, in any case: "jpg", "JPEG".
ImageFormat FormatForWord(const std::string& word);

// The libraries that read and write the formats, with their versions, one a line.
std::string CodecVersions();

// Reads a picture from a file, or from standard input where the name is "-"; its content tells the format. Throws a
// Failure with kExitInput that names the file.
LoadedPicture LoadPicture(const std::string& name, const ReadOptions& options = {});
LoadedPicture LoadPicture(const std::string& name, std::uint64_t maxPixels);

// Reads a picture from the bytes of a file; `name` is for messages.
LoadedPicture DecodePicture(std::span<const BYTE> bytes, const std::string& name, const ReadOptions& options = {});

// What a file of this format cannot hold of the picture and of what goes with it, a sentence each.
std::vector<std::string> WhatIsLost(const Picture& picture, const Metadata& metadata, const WriteOptions& options);

// The bytes of a file. Throws a Failure with kExitOutput; `name` is for messages.
std::vector<BYTE> EncodePicture(const Picture& picture, const Metadata& metadata, const WriteOptions& options,
                                const std::string& name);

// Writes a picture under a temporary name; it is in its place after Commit(), and gone otherwise. Where the name is
// "-", Commit() writes to standard output. Throws a Failure with kExitOutput that names the file.
std::unique_ptr<OutputFile> PreparePicture(const Picture& picture, const Metadata& metadata, const std::string& name,
                                           const WriteOptions& options);
std::unique_ptr<OutputFile> PreparePicture(const Picture& picture, const std::string& name, ImageFormat format,
                                           int quality);

// Writes a picture, all of it or nothing.
void SavePicture(const Picture& picture, const std::string& name, ImageFormat format, int quality);

#endif
