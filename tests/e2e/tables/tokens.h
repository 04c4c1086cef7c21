#pragma once

/// Answers to a request for a token that hold none.
inline constexpr const char* answersWithoutToken[] = {
    R"({"token":null,"error":null})",
    R"({"token":"","error":null})",
    R"({"token":" ","error":null})",
    R"({"token":7,"error":null})",
    R"({"token":"a\u0007b"})",
    R"({"error":{"code":"12"}})",
    R"({"error":{"code":-1}})",
    R"({"uuid":"u"})",
};
