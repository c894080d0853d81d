#include "inputs.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>

#include "pictures/failure.h"
#include "pictures/image_file.h"
#include "pictures/input_file.h"
#include "pictures/output_file.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestList = std::size_t{1} << 30;

// Whether a name fits a pattern, in which * stands for any characters and ? for one.
bool Fits(std::string_view name, std::string_view pattern) {
    std::size_t n = 0;
    std::size_t p = 0;
    std::size_t star = std::string_view::npos; // the last one, and where it began to fit
    std::size_t mark = 0;
    while (n != name.size()) {
        if (p != pattern.size() && pattern[p] == '*') {
            star = p++;
            mark = n;
        } else if (p != pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            n = ++mark;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

bool HasKnownEnding(const fs::path& path) {
    try {
        FormatForName(Utf8(path.filename()));
        return true;
    } catch (const Failure&) {
        return false;
    }
}

void AddFolder(const std::string& name, std::vector<InputFile>& inputs) {
    std::error_code failed;
    std::vector<fs::path> found;
    for (fs::recursive_directory_iterator at(PathOf(name), failed), end; !failed && at != end; at.increment(failed)) {
        std::error_code unknown;
        if (at->is_regular_file(unknown) && HasKnownEnding(at->path())) {
            found.push_back(at->path());
        }
    }
    if (failed) {
        throw ReadFailure(name, failed.message());
    }
    std::sort(found.begin(), found.end());
    for (const fs::path& path : found) {
        inputs.push_back({Utf8(path), Utf8(path.parent_path().lexically_relative(PathOf(name)))});
    }
}

std::string FileText(const std::string& name) {
    const std::vector<BYTE> bytes = ReadWholeFile(name, kLongestList, [](const std::vector<BYTE>&) {});
    return std::string(bytes.begin(), bytes.end());
}

// Names are ended by zeros where there are any, as "find -print0" makes them, else by the ends of lines.
std::vector<std::string> ReadList(const std::string& listName) {
    const std::string text =
        listName == "-" ? std::string(std::istreambuf_iterator<char>(std::cin), {}) : FileText(listName);
    const char separator = text.find('\0') != std::string::npos ? '\0' : '\n';
    std::vector<std::string> names;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(separator, at), text.size());
        std::string name = text.substr(at, end - at);
        if (separator == '\n' && name.ends_with('\r')) {
            name.pop_back();
        }
        if (!name.empty()) {
            names.push_back(name);
        }
        at = end + 1;
    }
    return names;
}

} // namespace

std::string Utf8(const fs::path& path) {
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

std::vector<std::string> ExpandPattern(const std::string& pattern) {
    const fs::path path = PathOf(pattern);
    const std::string last = Utf8(path.filename());
    std::error_code failed;
    if (last.find_first_of("*?") == std::string::npos || fs::exists(path, failed)) {
        return {pattern};
    }
    const fs::path folder = path.parent_path();
    std::vector<std::string> names;
    for (fs::directory_iterator at(folder.empty() ? "." : folder, failed), end; !failed && at != end;
         at.increment(failed)) {
        const std::string name = Utf8(at->path().filename());
        if (Fits(name, last) && (!name.starts_with(".") || last.starts_with("."))) {
            names.push_back(Utf8(folder / at->path().filename()));
        }
    }
    if (names.empty()) {
        throw ReadFailure(pattern, "no file fits the pattern");
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<InputFile> GatherInputs(const InputOptions& options) {
    std::vector<std::string> names;
    for (const std::string& name : options.names) {
        const std::vector<std::string> expanded = ExpandPattern(name);
        names.insert(names.end(), expanded.begin(), expanded.end());
    }
    if (!options.listName.empty()) {
        const std::vector<std::string> listed = ReadList(options.listName);
        names.insert(names.end(), listed.begin(), listed.end());
    }
    std::vector<InputFile> inputs;
    for (const std::string& name : names) {
        std::error_code unknown;
        if (!fs::is_directory(PathOf(name), unknown)) {
            inputs.push_back({name, {}});
        } else if (options.recursive) {
            AddFolder(name, inputs);
        } else {
            throw ReadFailure(name, "it is a folder; --recursive takes the pictures in it");
        }
    }
    return inputs;
}

std::string FillName(const std::string& pattern, const std::string& inputName) {
    const fs::path input = PathOf(inputName);
    std::string name;
    for (std::size_t at = 0; at < pattern.size();) {
        const std::size_t brace = std::min(pattern.find('{', at), pattern.size());
        name += pattern.substr(at, brace - at);
        const std::size_t end = std::min(pattern.find('}', brace), pattern.size());
        const std::string word = pattern.substr(brace, end - brace);
        if (word == "{stem") {
            name += Utf8(input.stem());
        } else if (word == "{ext") {
            name += Utf8(input.extension());
        } else if (!word.empty()) {
            throw Failure(kExitUsage, "\"" + pattern + "\": only {stem} and {ext} stand in braces");
        }
        at = end + 1;
    }
    return name;
}
