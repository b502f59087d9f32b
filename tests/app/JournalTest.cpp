#include "app/journal/Journal.h"

#include <atomic>
#include <filesystem>

#include <gtest/gtest.h>

#include "app/journal/JournalReader.h"
#include "app/journal/SecretFilter.h"
#include "tests/support/FullDisk.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

struct Fixture {
    TemporaryFolder folder;
    std::string path = folder.path() + "/state/tarnik.log";
    std::shared_ptr<ManualQueue> disk = std::make_shared<ManualQueue>();
    WallTime now = std::chrono::sys_days(std::chrono::year(2026) / 3 / 1) + 9h + 1234567us;
    Journal journal{path, {.now = [this] { return now; }, .makeQueue = [this](const auto&) { return disk; }}};

    std::vector<std::string> sentences(std::size_t count = 1000) const {
        std::vector<std::string> found;
        for (const auto& event : readJournal(path, count)) found.push_back(event.sentence);
        return found;
    }
};

using Sentences = std::vector<std::string>;

TEST(Journal, readsBackWhatItRecorded) {
    Fixture f;
    std::vector<JournalEvent> observed;
    f.journal.observe([&](const auto& event) { observed.push_back(event); });
    f.journal.record(EventCode::helperEnded, "The \"helper\"\nstopped – with exit 3.",
                     {{EventField::exit, 3}, {EventField::reason, "a\tb"}});
    f.journal.record(EventCode::programEnded, "End.");
    EXPECT_EQ(observed[0].sentence, "The \"helper\" stopped – with exit 3.");
    EXPECT_EQ(observed[0].json().substr(0, 55), R"({"time":"2026-03-01T09:00:01.234Z","event":"helper.ende)");
    EXPECT_EQ(f.journal.events(), observed);
    EXPECT_EQ(readJournal(f.path, 10), observed);
    EXPECT_EQ(f.sentences(1), Sentences{"End."});
    EXPECT_EQ(fs::status(f.path).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(fs::path(f.path).parent_path()).permissions(), fs::perms(0700));
}

TEST(Journal, boundsItsMemoryWhileTheDiskHangs) {
    Fixture f;
    f.disk->hold();
    const int count = 3 * static_cast<int>(Journal::waitingLines);
    for (int i = 0; i < count; ++i) f.journal.record(EventCode::installStep, std::to_string(i));
    EXPECT_EQ(f.journal.events().size(), Journal::keptEvents);
    f.disk->runWaiting();
    EXPECT_EQ(f.sentences().size(), Journal::waitingLines);
    EXPECT_EQ(f.sentences().back(), std::to_string(count - 1));
}

TEST(Journal, survivesEveryObstacleOnTheDisk) {
    for (const char* obstacle :
         {"mkdir -p state/tarnik.log", "touch state", "mkdir state; mkfifo state/tarnik.log",
          "mkdir state; ln -s /dev/full state/tarnik.log"}) {
        Fixture f;
        shell(f.folder.path(), obstacle);
        f.journal.record(EventCode::programStarted, "lost");
        EXPECT_EQ(f.sentences(), Sentences()) << obstacle;
        fs::remove_all(f.folder.path() + "/state");
        f.journal.record(EventCode::programStarted, "written");
        EXPECT_EQ(f.sentences(), Sentences{"written"}) << obstacle;
    }
    Fixture f;
    f.journal.record(EventCode::programStarted, "first");
    onFullDisk(fs::file_size(f.path) + 20, [&] { f.journal.record(EventCode::programStarted, "cut short"); });
    f.journal.record(EventCode::programStarted, "third");
    EXPECT_EQ(f.sentences(), (Sentences{"first", "third"}));
    onFullDisk(fs::file_size(f.path) + 20, [&] { f.journal.record(EventCode::programStarted, "cut short"); });
    Journal next(f.path, {.now = [&] { return f.now; }, .makeQueue = [&](const auto&) { return f.disk; }});
    next.record(EventCode::programStarted, "next run");
    EXPECT_EQ(f.sentences(), (Sentences{"first", "third", "next run"}));
}

TEST(Journal, keepsTwoFilesOfBoundedSize) {
    const Fixture f;
    const std::int64_t fileBytes = 10'000;
    Journal journal(f.path, {.now = [&] { return f.now; },
                             .makeQueue = [&](const auto&) { return f.disk; },
                             .fileBytes = fileBytes});
    const int count = 60;
    for (int i = 0; i < count; ++i)
        journal.record(EventCode::installStep, std::to_string(i) + std::string(380, '.'));
    EXPECT_LT(fs::file_size(f.path), fileBytes + 1000);
    EXPECT_LT(fs::file_size(f.path + ".1"), fileBytes + 1000);
    const auto kept = f.sentences();
    EXPECT_GT(kept.size(), 25U);  // more than one file has
    EXPECT_EQ(std::stoul(kept.front()) + kept.size(), static_cast<std::size_t>(count));
}

TEST(JournalReader, skipsDamagedLines) {
    Fixture f;
    f.journal.record(EventCode::programStarted, "good");
    const std::string good = f.folder.read("state/tarnik.log");
    const std::string late =
        R"({"time":"9999-03-01T09:00:01.234Z","event":"program.started","sentence":"x"})";
    const std::string unknown = R"({"time":"2026-03-01T09:00:01.234Z","event":"new","sentence":"x"})";
    const std::string escape =
        R"({"time":"2026-03-01T09:00:01.234Z","event":"program.ended","sentence":"a\u009bb"})";
    f.folder.write("state/tarnik.log", good + "\n" + good.substr(9) + std::string(9000, '{') + "\n" + late +
                                           "\n" + unknown + "\n\xff\n" + escape + "\n" + good +
                                           good.substr(0, 40));
    EXPECT_EQ(f.sentences(), (Sentences{"good", "ab", "good"}));
}

TEST(SecretFilter, removesAddressesCodesTokensAndKeys) {
    const std::string code = "AbCdEfGhIj0123456789_-";
    const std::pair<std::string, std::string> cases[] = {
        {"connect " + code, "connect [hidden]"},
        {"(" + code + ")", "([hidden])"},
        {"https://me:pw@h.example:8/c/" + code + "?t=1 failed", "https://h.example:8/[hidden] failed"},
        {"Couldn't load https://h.example/s.json. Try", "Couldn't load https://h.example/[hidden]. Try"},
        {"tarnik://" + code, "tarnik://[hidden]"},
        {"token=abc, --key: xyz", "token=[hidden], --key: [hidden]"},
        {R"({"api_key" : "abc"})", R"({"api_key" : "[hidden]"})"},
        {"Authorization: Bearer abc", "Authorization: [hidden]"},
        {"--token abc --password 'two words' end", "--token [hidden] --password '[hidden]' end"},
        {"/cb?state=1&token=abc&x=2", "/cb?state=1&token=[hidden]&x=2"},
        {"error:token=abc", "error:token=[hidden]"},
        {R"({\"token\":\"abc\",\"n\":1})", R"({\"token\":\"[hidden]\",\"n\":1})"},
        {R"("password": "two \" words", "n": "")", R"("password": "[hidden]", "n": "")"},
        {"Cookie: a=1; sid=xyz\nend", "Cookie: [hidden]\nend"},
        {"passphrase: a credentials=b auth=c pass=d",
         "passphrase: [hidden] credentials=[hidden] auth=[hidden] pass=[hidden]"},
        {"token: Bearer abc", "token: [hidden] [hidden]"},
        {"pass\tphrase: a b, c; key=d e --no", "pass\tphrase: [hidden], c; key=[hidden] --no"},
        {"The helper ended: exit 3", "The helper ended: exit 3"},
        {"key wJalrXUtnFEMIK7MDENG/bPxRfi== ok", "key [hidden] ok"},
        {"mkdir /home/me/.tarnik/node failed: No space", "mkdir /home/me/.tarnik/node failed: No space"},
    };
    for (const auto& [text, filtered] : cases) EXPECT_EQ(withoutSecrets(text), filtered);
}

}  // namespace
}  // namespace tarnik
