#include "chains/json.h"

#include <cstddef>
#include <iterator>

#include <nlohmann/json.hpp>

#include "pictures/failure.h"

namespace {

using Json = nlohmann::ordered_json;

// Counts the lines that the parser has taken characters from.
class CountingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountingIterator(const char* at, int* line) : at_(at), line_(line) {}

    reference operator*() const {
        return *at_;
    }
    CountingIterator& operator++() {
        *line_ += *at_ == '\n' ? 1 : 0;
        ++at_;
        return *this;
    }
    bool operator==(const CountingIterator& other) const {
        return at_ == other.at_;
    }
    bool operator!=(const CountingIterator& other) const {
        return at_ != other.at_;
    }

private:
    const char* at_;
    int* line_;
};

// Receives the parts of a file one after the other and builds the tree. The names of its functions are the parser's.
class TreeBuilder : public nlohmann::json_sax<Json> {
public:
    explicit TreeBuilder(const int* line) : line_(line) {}

    bool null() override {
        return Add(JsonNode::Kind::kNothing, "");
    }
    bool boolean(bool value) override {
        return Add(JsonNode::Kind::kText, value ? "1" : "0");
    }
    bool number_integer(number_integer_t value) override {
        return Add(JsonNode::Kind::kText, std::to_string(value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        return Add(JsonNode::Kind::kText, std::to_string(value));
    }
    bool number_float(number_float_t, const string_t& text) override {
        return Add(JsonNode::Kind::kText, text);
    }
    bool string(string_t& value) override {
        return Add(JsonNode::Kind::kText, value);
    }
    bool binary(binary_t&) override {
        return false;
    }
    bool start_object(std::size_t) override {
        return Begin(JsonNode::Kind::kObject);
    }
    bool key(string_t& name) override {
        name_ = name;
        nameLine_ = *line_;
        return true;
    }
    bool end_object() override {
        return End();
    }
    bool start_array(std::size_t) override {
        return Begin(JsonNode::Kind::kArray);
    }
    bool end_array() override {
        return End();
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
        const std::string words = error.what();
        mistake = words.substr(words.find("] ") + 2);
        return false;
    }

    JsonNode root;
    std::string mistake;

private:
    static constexpr std::size_t kDeepest = 16;

    // Names and values of a member are said to stand where the name stands.
    JsonNode Made(JsonNode::Kind kind, const std::string& text) {
        const bool isMember = !open_.empty() && open_.back().kind == JsonNode::Kind::kObject;
        return {kind, isMember ? nameLine_ : *line_, isMember ? name_ : "", text, {}};
    }
    bool Add(JsonNode::Kind kind, const std::string& text) {
        return Store(Made(kind, text));
    }
    bool Store(JsonNode node) {
        (open_.empty() ? root : open_.back().children.emplace_back()) = std::move(node);
        return true;
    }
    bool Begin(JsonNode::Kind kind) {
        open_.push_back(Made(kind, ""));
        mistake = open_.size() > kDeepest ? "parts within parts are too deep" : "";
        return mistake.empty();
    }
    bool End() {
        JsonNode node = std::move(open_.back());
        open_.pop_back();
        return Store(std::move(node));
    }

    const int* line_;
    int nameLine_ = 1;
    std::string name_;
    std::vector<JsonNode> open_;
};

} // namespace

JsonNode ParseJson(const std::string& text, const std::string& fileName) {
    int line = 1;
    TreeBuilder builder(&line);
    const bool understood = Json::sax_parse(CountingIterator(text.data(), &line),
                                            CountingIterator(text.data() + text.size(), &line), &builder);
    if (!understood) {
        throw Failure(kExitUsage, fileName + ": line " + std::to_string(line) + ": " + builder.mistake);
    }
    return std::move(builder.root);
}

std::string JsonLine(const std::vector<std::pair<std::string, JsonValue>>& members) {
    Json object = Json::object();
    for (const auto& [name, value] : members) {
        std::visit([&object, &memberName = name](const auto& held) { object[memberName] = held; }, value);
    }
    return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}
