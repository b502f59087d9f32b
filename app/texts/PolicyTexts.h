#pragma once

#include <string_view>

#include "app/texts/DoctorTexts.h"

// The texts about the settings that an organisation makes.
namespace tarnik::PolicyTexts {

using Text = std::string_view;

// The words of the two groups, in files and in the status.
inline constexpr Text forced = "forced";
inline constexpr Text defaults = "defaults";

// Why a policy is refused. Each follows the name of its file.
inline constexpr Text notJson = "isn't JSON, is larger than 64 KiB, or names a key twice";
inline constexpr Text notValues =
    "has a value that isn't text, true, false, an integer or a dictionary, or a key twice";
inline constexpr Text noObject = "isn't an object with the members \"forced\" and \"defaults\"";
inline constexpr Text unknownGroup =
    "has the unknown member \"{key}\"; only \"forced\" and \"defaults\" exist";
inline constexpr Text groupIsNoObject = "has a member \"{key}\" that isn't an object";
inline constexpr Text unknownKey = "has the unknown key \"{key}\"";
inline constexpr Text notAllowed = "has the key \"{key}\", which this build doesn't accept";
inline constexpr Text twice = "has the key \"{key}\" both as forced and as default";
inline constexpr Text wrongValue = "has a wrong value for the key \"{key}\"; it must be {form}";
inline constexpr Text unreadable = "can't be read ({reason})";
inline constexpr Text tooManyFiles = "has more than 64 files";

// Why a file is ignored. Each follows its name.
inline constexpr Text notOwned = "doesn't belong to {owner}";
inline constexpr Text writable = "can be changed by other users";
inline constexpr Text notRegular = "is a link or not a regular file";
inline constexpr Text notFolder = "is a link or not a folder";
inline constexpr Text notForced = "isn't set by a configuration profile";

// Sentences of the log, the status and the doctor.
inline constexpr Text damaged =
    "The settings of your organisation aren't used, because {file} {reason}. tarnik uses its own settings.";
inline constexpr Text ignored = "{file} is ignored, because it {reason}.";

// The doctor's findings.
inline constexpr const char* inForce = "Your organisation has set: ";
inline constexpr DoctorTexts::Text damagedRemedy{
    "", "Ask your administrator to correct that file, then quit tarnik and start it again."};
inline constexpr DoctorTexts::Text ignoredRemedy{"",
                                                 "Ask your administrator to set it by a file that only root "
                                                 "can change, in folders that only root can change, "
                                                 "or on macOS by a configuration profile."};
inline constexpr DoctorTexts::Text changed{
    "The settings of your organisation have changed since tarnik was started.",
    "Quit tarnik and start it again; it reads them at its start."};

}  // namespace tarnik::PolicyTexts
