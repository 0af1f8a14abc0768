// Differential: the sermon files' one-pass JSON reader must accept exactly what nlohmann accepts
// and read the same values, except that it refuses nesting nlohmann would follow to any depth.
#include "FuzzInput.h"

#include "model/JsonTree.h"
#include "model/SermonCoding.h"
#include "support/JsonDescription.h"

#include <optional>
#include <string>

namespace {

using quillon::model::JsonTree;
using Json = quillon::model::OrderedJSON;

using quillon::testing::describe;

/// The deepest nesting of arrays and objects outside strings (the input is valid JSON here).
int nestingDepth(std::string_view text) {
    int depth = 0, deepest = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            deepest = std::max(deepest, ++depth);
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return deepest;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using quillon::fuzz::require;
    const std::string_view text = quillon::fuzz::text(data, size);
    std::optional<Json> expected;
    try {
        expected = Json::parse(text);
    } catch (const Json::exception&) {
    }
    std::optional<JsonTree> tree;
    try {
        tree.emplace(JsonTree::parse(text));
    } catch (const quillon::model::DecodingError&) {
    }
    if (!expected) {
        require(!tree);
        return 0;
    }
    if (!tree) {
        // nlohmann takes a NUL byte for the end of its input and ignores what follows; the tree
        // refuses it like any other stray byte, so a file padded with NULs is not half-read.
        require(nestingDepth(text) > JsonTree::maximumDepth || text.find('\0') != std::string_view::npos);
        return 0;
    }
    require(describe(tree->root()) == describe(*expected));
    return 0;
}
