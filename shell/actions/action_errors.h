#pragma once
// The words in which commands report failures.

namespace ActionError {
inline constexpr const char* INVALID_PARAMETER = "invalid parameter";
inline constexpr const char* WRONG_PARAMETER_COUNT = "wrong parameter count";
inline constexpr const char* CANCELLED = "cancelled by the user";
inline constexpr const char* NOT_CONNECTED = "not connected";
inline constexpr const char* ALREADY_CONNECTED = "already connected";
inline constexpr const char* PROGRAM_IS_RUNNING = "program is running";
inline constexpr const char* STEP_IN_PROGRESS = "step in progress";
inline constexpr const char* FILE_NOT_FOUND = "file not found";
inline constexpr const char* INVALID_FILENAME = "invalid filename";
inline constexpr const char* INVALID_PROJECT_FILENAME = "invalid project filename";
inline constexpr const char* INVALID_NUMBER = "invalid number";
inline constexpr const char* NOT_A_NUMBER = "not a number";
inline constexpr const char* UNKNOWN_SYMBOL = "unknown symbol";
inline constexpr const char* UNKNOWN_WINDOW = "unknown window";
inline constexpr const char* UNKNOWN_TOOLBAR = "unknown toolbar";
inline constexpr const char* UNKNOWN_COLOR = "unknown color";
inline constexpr const char* UNKNOWN_FONT = "unknown font";
inline constexpr const char* UNKNOWN_PREFERENCE = "unknown preference";
inline constexpr const char* UNKNOWN_SYSTEM_VARIABLE = "unknown system variable";
inline constexpr const char* UNKNOWN_HOST_INTERFACE = "unknown host interface";
inline constexpr const char* UNKNOWN_TARGET_INTERFACE = "unknown target interface";
inline constexpr const char* NO_SOURCE_INFO = "no source info";
inline constexpr const char* FILE_IS_NOT_OPEN = "file is not open";
inline constexpr const char* BREAKPOINT_ALREADY_SET = "Breakpoint already set";
inline constexpr const char* BREAKPOINT_NOT_SET = "Breakpoint not set";
inline constexpr const char* BREAKPOINT_NOT_DISABLED = "Breakpoint not disabled";
inline constexpr const char* DERIVED_BREAKPOINT = "Derived breakpoints cannot be cleared individually";
inline constexpr const char* NO_BREAKPOINT_MATCHES = "No breakpoint matches the given parameters.";
inline constexpr const char* COULD_NOT_READ_MEMORY = "could not read MCU memory";
inline constexpr const char* RTT_SEARCH_RANGE_FULL = "Could not add RTT search range. Buffer full.";
inline constexpr const char* ERROR_PARSING_EXPRESSION = "Error parsing expression";
inline constexpr const char* ERROR_EVALUATING_EXPRESSION = "Error evaluating expression.";
inline constexpr const char* PROJECT_FILE_NOT_VALID = "Project file is not valid";
inline constexpr const char* INVALID_ADDRESS_PARAMETER = "Invalid Address Parameter";
}  // namespace ActionError
