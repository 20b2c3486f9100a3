#pragma once

#include <QString>

#include <optional>

/// Who may change a property, and to what. A rule is a text, so that it fits a table of properties:
/// one of the constants below, "LOW..HIGH" for a number in this range, or "A|B|C" for one of these words.
namespace ValueRule {

/// Read-only; only the device itself changes it, and factory defaults leave it alone.
constexpr const char *fixed = nullptr;
/// Read-only, but a method changes it and factory defaults bring it back.
constexpr const char *byMethod = "";
constexpr const char *anyText = "*";
/// "true" or "false"; "1" and "0" are understood and stored as these.
constexpr const char *boolean = "bool";
/// An IPv4 address in dotted notation.
constexpr const char *ipAddress = "ip";

/// The value as it is stored, or nothing where the rule refuses it.
std::optional<QString> accepted(const QString &rule, const QString &value);

} // namespace ValueRule
