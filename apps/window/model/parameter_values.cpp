#include "model/parameter_values.h"

#include <algorithm>

#include "catalogue/text.h"

namespace {

const catalogue::Value kNothing;

struct Comparison {
    bool operator()(const catalogue::Colour& a, const catalogue::Colour& b) const {
        return a.red == b.red && a.green == b.green && a.blue == b.blue;
    }
    bool operator()(const std::vector<POINT>& a, const std::vector<POINT>& b) const {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                          [](const POINT& p, const POINT& q) { return p.x == q.x && p.y == q.y; });
    }
    bool operator()(const RECT& a, const RECT& b) const {
        return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    }
    bool operator()(const catalogue::Kernel& a, const catalogue::Kernel& b) const {
        return a.weights == b.weights && a.divisor == b.divisor && a.offset == b.offset;
    }
    template <class Type>
    bool operator()(const Type& a, const Type& b) const {
        return a == b;
    }
    template <class Type, class Other>
    bool operator()(const Type&, const Other&) const {
        return false;
    }
};

} // namespace

bool AreEqual(const catalogue::Value& value, const catalogue::Value& other) {
    return std::visit(Comparison(), value, other);
}

const catalogue::Value& ParameterValues::Get(const std::string& name) const {
    const Setting* const setting = step_.Find(name);
    return setting != nullptr ? setting->value : kNothing;
}

bool ParameterValues::Set(const std::string& name, const catalogue::Value& value) {
    Setting* const setting = step_.Find(name);
    if (setting == nullptr || (AreEqual(setting->value, value) && setting->file.empty())) {
        return false;
    }
    setting->value = value;
    setting->file.clear();
    DropExcluded(*setting);
    return true;
}

void ParameterValues::DropExcluded(const Setting& given) {
    using catalogue::Kind;
    const auto isSide = [](Kind kind) { return kind == Kind::kWidth || kind == Kind::kHeight; };
    const Kind kind = given.parameter->kind;
    for (Setting& setting : step_.settings) {
        const Kind other = setting.parameter->kind;
        if (given.value.index() != 0 &&
            ((kind == Kind::kScale && isSide(other)) || (isSide(kind) && other == Kind::kScale))) {
            setting.value = {};
        }
    }
}

std::string ParameterValues::SetText(const std::string& name, const std::string& text) {
    Setting* const setting = step_.Find(name);
    if (setting == nullptr) {
        return "there is no parameter " + name;
    }
    Setting read{setting->parameter, {}, {}};
    std::string mistake = text.empty() ? std::string() : ::Set(read, text);
    if (mistake.empty()) {
        *setting = read;
        DropExcluded(*setting);
    }
    return mistake;
}

std::string ParameterValues::Text(const std::string& name) const {
    const Setting* const setting = step_.Find(name);
    return setting == nullptr       ? ""
           : !setting->file.empty() ? setting->file
                                    : catalogue::TextOf(*setting->parameter, setting->value);
}
