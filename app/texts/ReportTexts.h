#pragma once

// The headings of a report.
namespace tarnik::ReportTexts {

using Text = const char*;

inline constexpr Text introduction =
    "This is the report of tarnik. tarnik never sends it. Codes, keys, addresses and names are hidden where\n"
    "tarnik recognises them. Read the report before you pass it on.\n";
inline constexpr Text versions = "Versions";
inline constexpr Text settings = "Settings of the build";
inline constexpr Text doctor = "Doctor";
inline constexpr Text status = "Status";
inline constexpr Text journal = "End of tarnik's log";
inline constexpr Text helperLog = "End of the helper's log";

inline constexpr Text working = "Gathering the report. This takes up to 20 seconds.";
inline constexpr Text written = "The report is in ";                       // before the path
inline constexpr Text notWritten = "The report couldn't be written: ";     // before the reason
inline constexpr Text notGathered = "The details couldn't be gathered: ";  // before the reason
inline constexpr Text statusNotRunning = "tarnik isn't running.";

}  // namespace tarnik::ReportTexts
