#pragma once

#include <string_view>

// The symbols that the window draws.
namespace tarnik::SymbolName {

inline constexpr std::string_view checkmark = "checkmark.circle.fill";
inline constexpr std::string_view circle = "circle";
inline constexpr std::string_view arrows = "arrow.triangle.2.circlepath";
inline constexpr std::string_view download = "arrow.down.circle";
inline constexpr std::string_view warning = "exclamationmark.triangle";
inline constexpr std::string_view laptop = "laptopcomputer";
inline constexpr std::string_view refusal = "exclamationmark.circle.fill";
inline constexpr std::string_view pointer = "arrow.down";

}  // namespace tarnik::SymbolName
