// Values as text: how command lines, recipes and dialogs write them, and what help says about them.
#ifndef QV8_CATALOGUE_TEXT_H
#define QV8_CATALOGUE_TEXT_H

#include <optional>
#include <string>
#include <vector>

#include "catalogue/effect.h"

namespace catalogue {

// Whether the text of the parameter may name a file, which the caller reads.
bool MayNameFile(const Parameter& parameter);

// Reads the text of a value. Pictures and masks are the caller's, and so are kernels that have no name. Returns what is
// wrong with the text, or nothing.
std::string ParseValue(const Parameter& parameter, const std::string& text, Value& value);

// The text that ParseValue makes the value of; none for a default, a kernel, a picture or a mask.
std::string TextOf(const Parameter& parameter, const Value& value);

// Reads all of a decimal whole number from `least` to `most`, or nothing.
std::optional<LONG> ParseInteger(const std::string& text, LONG least, LONG most);

// Such as "blur, gauss or edges".
std::string WordList(const std::vector<std::string>& words);

// The points of "x,y x,y ...", or nothing when the text is anything else.
std::optional<std::vector<POINT>> ParsePoints(const std::string& text);

// The rectangle of "left,top,right,bottom", or nothing when the text is anything else.
std::optional<RECT> ParseRectangle(const std::string& text);

// The form of a value for help, such as "N", "x,y" or "FILE".
std::string FormOf(const Parameter& parameter);

// The range or the choices of a parameter and its default for help, such as "0..255, 128 unless given"; may be empty.
std::string LimitsOf(const Parameter& parameter);

std::vector<std::string> KernelNames();

// Whether there is a kernel of that name, which is stored then.
bool FindKernel(const std::string& name, Kernel& kernel);

// Weights from text: as many words in each line, as lines, 1, 3, 5, 7 or 9 of them, put in the middle. "divisor N" and
// "offset N" on lines of their own; "#" begins a comment. Without a divisor it is the sum of the weights where that is
// in 1..255, else 1. Returns what is wrong with the text, or nothing.
std::string ParseKernel(const std::string& text, Kernel& kernel);

} // namespace catalogue

#endif
