#include "text/Json.h"

#include <nlohmann/json.hpp>

namespace qnl::text {

std::string JsonText(const Json& json) {
    constexpr int kIndent = 2;
    return json.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace qnl::text
