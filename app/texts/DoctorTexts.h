#pragma once

// The findings of the doctor and their remedies. A sentence that begins with a space follows its subject,
// such as a path. "FOLDER" in a remedy is replaced by the subject.
namespace tarnik::DoctorTexts {

// The sentence of a finding and its remedy.
struct Text {
    const char* sentence;
    const char* remedy = "";
};

// The last line of the doctor.
inline constexpr const char* allIsWell = "No problems were found.";
inline constexpr const char* oneProblem = "There is one problem.";
inline constexpr const char* manyProblems = "Problems found: ";  // before their number

// The settings of the build.
inline constexpr Text noRelease{
    "This build doesn't name the server or the key of the helper, so tarnik can't install it.",
    "Install a released build of tarnik."};
inline constexpr Text badKey{"The key of this build is malformed, so no helper can be verified.",
                             "Install tarnik again."};
inline constexpr Text plainHttp{
    " is used without encryption. The helper's signature is checked all the same.",
    "Install a released build of tarnik."};

// The helper's folder.
inline constexpr Text badHome{"", "Choose another folder for the helper, or start without --node-home."};
inline constexpr Text homeIsAFile{" isn't a folder, so the helper can't be installed.",
                                  "Move that file away and start tarnik."};
inline constexpr Text homeIsALink{" is a symbolic link, and tarnik doesn't follow those.",
                                  "Remove the link, or choose the folder that it names with --node-home."};
inline constexpr Text homeIsOthers{" belongs to another user.",
                                   "Change its owner to you: sudo chown -R \"$USER\" FOLDER"};
inline constexpr Text homeIsClosed{" doesn't give you full access, so the helper can't run.",
                                   "Give yourself access: chmod u+rwx FOLDER"};
inline constexpr Text parentIsClosed{" doesn't let you create the helper's folder in it.",
                                     "Choose another folder for the helper with --node-home."};
inline constexpr Text homeIsOpen{" can be changed by other users.",
                                 "Remove their permission: chmod go-w FOLDER"};
inline constexpr Text homeIsForeign{" has files that tarnik didn't put there, so nothing is installed.",
                                    "Move them out of it and start tarnik."};
inline constexpr Text notInstalled{"The helper isn't installed yet.",
                                   "Start tarnik; it installs the helper."};
inline constexpr Text notRunning{"tarnik isn't running.", "Start it with: tarnik (or: tarnik serve)"};
inline constexpr Text homeIsHeld{" uses the helper's folder and doesn't answer.",
                                 "End that program, or wait until it has ended, and start tarnik."};
inline constexpr Text diskFull{" is on a disk that is full.", "Make room: an install needs about 500 MB."};
inline constexpr Text diskLow{" is on a disk with little room.",
                              "Make room: an install needs about 500 MB, and the log up to 10 MB."};
inline constexpr Text logsClosed{" can't be written, so nothing is logged.",
                                 "Give yourself access to it: chmod u+rwx FOLDER"};
inline constexpr Text logIsOdd{" isn't a file of yours, so nothing is logged there.", "Move it away."};

// The helper.
inline constexpr Text noRuntime{"Node.js is missing from the helper's folder.",
                                "Quit tarnik and start it again; it installs what is missing."};
inline constexpr Text deadRuntime{
    " doesn't run.",
    "Quit tarnik, remove the folder runtime/node of the helper's folder, and start "
    "tarnik; it installs Node.js again."};
inline constexpr Text otherRuntime{
    " has another version than this build installs.",
    "Quit tarnik, remove the folder runtime/node of the helper's folder, and start "
    "tarnik; it installs Node.js again."};
inline constexpr Text noPackage{
    "The helper package is missing or incomplete.",
    "Quit tarnik, remove the folder app of the helper's folder, and start tarnik; it "
    "installs the helper again."};
inline constexpr Text noProvenance{
    "There is no record of the installed files, so they can't be compared. An earlier "
    "version of tarnik kept none.",
    "To get a record, quit tarnik, remove the folder app of the helper's folder, "
    "and start tarnik."};
inline constexpr Text badProvenance{"The record of the installed files can't be trusted: ",
                                    "See how to repair it with: tarnik verify"};
inline constexpr Text changedFiles{"The installed files differ from their record: ",
                                   "See all of them, and how to repair it, with: tarnik verify"};
inline constexpr const char* repair =
    "To repair it, quit tarnik, remove these folders, and start tarnik; it installs both again and stays "
    "connected:";
inline constexpr Text restarts{"", "Read why: tarnik logs helper"};
inline constexpr Text notJoined{"This computer isn't paired with an account.",
                                "Ask for a link in your chat, and open it or pass it to: tarnik connect"};

// The desktop driver and the desktop.
inline constexpr Text noDriver{"This build has no desktop driver, so tarnik can't work in your apps.",
                               "Install a released build of tarnik."};
inline constexpr Text socketTooLong{" is too long for the driver's socket.",
                                    "Use a shorter path for the application's data."};
inline constexpr Text supportClosed{" can't be used for the driver's socket.",
                                    "Give yourself access to it: chmod u+rwx FOLDER"};
inline constexpr Text switchesOff{
    "The switches for working in your apps are off: ",
    "Turn them on in tarnik's window. Without a window the desktop driver stays off."};
inline constexpr Text translocated{"The system runs tarnik from a temporary place.",
                                   "Move tarnik to the Applications folder and open it there."};
inline constexpr Text elsewhere{" isn't where tarnik belongs, so its permissions may be lost.",
                                "Move it to the Applications folder and open it there."};
inline constexpr Text oldAgent{"An agent of an earlier command-line install starts a second helper at login.",
                               "Start tarnik once; it removes an agent that is its own."};
inline constexpr Text noLoginItem{"tarnik doesn't start when you log in.",
                                  "Turn it on in the system's list of programs that start at login."};
inline constexpr Text autostartOff{
    "The entry that starts tarnik when you log in is turned off.",
    "If you want that, turn on \"Start at login\" in tarnik's window. A service doesn't need it."};
inline constexpr Text noBus{
    "There is no session bus, so the window has no tray icon and links don't reach it.",
    "Log in to a desktop session, or use: tarnik serve"};
inline constexpr Text noTray{"The desktop has no tray, so tarnik shows its window instead of an icon.",
                             "Install a tray extension for your desktop if you want the icon."};
inline constexpr Text otherHandler{"Links from your chat aren't opened by tarnik.",
                                   "Run: xdg-mime default com.tarnik.node.desktop x-scheme-handler/tarnik"};
inline constexpr Text deadAutostart{" starts a program that doesn't exist.",
                                    "Remove that file and start tarnik; it doesn't write it again."};

}  // namespace tarnik::DoctorTexts
