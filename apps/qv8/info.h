// What there is to know about a picture file, in words.
#ifndef QV8_APP_INFO_H
#define QV8_APP_INFO_H

#include <string>

#include "pictures/image_file.h"

// Several lines, one for each property.
std::string DescribePicture(const std::string& name, const LoadedPicture& loaded);

// The same as one line of JSON.
std::string DescribeAsJson(const std::string& name, const LoadedPicture& loaded);

#endif
