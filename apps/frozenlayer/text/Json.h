#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace qnl::text {

/// A JSON document whose objects keep the order in which they were filled. Numbers that are not finite become
/// null.
using Json = nlohmann::ordered_json;

/// The document, indented by two blanks per level, with a closing line end. Bytes that are not UTF-8 become
/// the replacement character.
std::string JsonText(const Json& json);

}  // namespace qnl::text
