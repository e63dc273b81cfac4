#include "text/Json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

namespace {

using qnl::text::Json;
using qnl::text::JsonText;

TEST(JsonText, KeepsTheOrderAndIndents) {
    Json json;
    json["b"] = 1;
    json["a"] = {0.1, true};
    json["empty"] = Json::object();
    EXPECT_EQ(JsonText(json), "{\n  \"b\": 1,\n  \"a\": [\n    0.1,\n    true\n  ],\n  \"empty\": {}\n}\n");
}

TEST(JsonText, BytesThatAreNotUtf8AreReplaced) {
    EXPECT_EQ(JsonText(Json("a\xFF"
                            "b\xC3")),
              "\"a\uFFFDb\uFFFD\"\n");
}

TEST(JsonText, NumbersThatAreNotFiniteAreNull) {
    for (const double number : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(JsonText(Json(number)), "null\n");
    }
}

TEST(JsonText, NumbersReadBackAsTheyWere) {
    for (const double number : {0.1, 6.4, 1.0 / 3.0, 1e-300, 123456789.125}) {
        EXPECT_EQ(Json::parse(JsonText(Json(number))).get<double>(), number);
    }
}

}  // namespace
