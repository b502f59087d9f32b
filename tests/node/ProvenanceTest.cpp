#include "core/node/Provenance.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/foundation/Crypto.h"
#include "core/foundation/Json.h"
#include "core/node/InstallRecord.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;
using State = ProvenanceCheck::TreeState;
using Record = ProvenanceCheck::Record;

const std::string key(43, 'A');

void write(const std::string& path, const std::string& text) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path) << text;
    ::chmod(path.c_str(), 0600);
}

// An installed and recorded helper.
struct Installed {
    TemporaryFolder folder;
    NodeHome home{.path = folder.path() + "/node"};
    bool signatureIsGood = true;
    ReleaseCrypto crypto{.verifyEd25519 = [this](auto...) { return signatureIsGood; },
                         .sha256Hex = sha256Hex,
                         .sha256HexOfFile = sha256HexOfFile};

    Installed() {
        write(home.nodeBinary(), "runtime");
        fs::create_symlink("../lib/npm", home.runtimeDir() + "/bin/npm");
        write(home.entry(), "entry");
        write(home.appDir() + "/a b\n%", "odd name");
        auto record = make();
        record.runtimeReplaced({.version = "v1", .sha256 = std::string(64, 'a')},
                               record.list(home.runtimeDir()));
        record.packageReplaced({.sha256 = std::string(64, 'b')}, record.list(home.appDir()));
    }
    InstallRecord make() {
        const std::string id = NodeRelease::keyId(*NodeRelease::base64url(key), crypto);
        const std::string manifest =
            R"({"v":1,"channel":"stable","version":"2026.5.1","publishedAtMs":1,"minNodeVersion":"22.0.0",)"
            R"("upstream":{"version":"1","commit":")" +
            std::string(40, 'c') + R"("},"artifacts":{"cpu":{"path":"p.tar.gz","sha256":")" +
            std::string(64, 'b') + R"(","size":10}}})";
        const std::string file = R"({"v":1,"manifest":)" + quotedJson(manifest) + R"(,"keyId":")" + id +
                                 R"(","sig":")" + std::string(86, 'A') + R"("})";
        return {home, {.file = file, .version = "2026.5.1", .keyId = id, .platform = "cpu"}, crypto};
    }
    ProvenanceCheck check() { return ProvenanceCheck::of(home, key, crypto); }
};

TEST(Provenance, namesEveryFileThatDiffers) {
    Installed f;
    EXPECT_TRUE(f.check().isGood());
    EXPECT_EQ(fs::status(Provenance::pathIn(f.home)).permissions(), fs::perms(0600));
    write(f.home.path + "/trust/web-key.json", "the node's own file");
    EXPECT_TRUE(f.check().isGood());

    write(f.home.entry(), "other");
    ::chmod((f.home.appDir() + "/a b\n%").c_str(), 0700);
    write(f.home.appDir() + "/new", "");
    fs::remove(f.home.runtimeDir() + "/bin/npm");
    fs::create_symlink("elsewhere", f.home.runtimeDir() + "/bin/npm");
    fs::remove(f.home.nodeBinary());
    const auto check = f.check();
    EXPECT_FALSE(check.isGood());
    ASSERT_EQ(check.trees.size(), 2U);
    EXPECT_EQ(check.trees[0].differences, (TreeDifferences{{"bin/npm"}, {"bin/node"}, {}, {}}));
    EXPECT_EQ(check.trees[1].differences,
              (TreeDifferences{{"a%20b%0A%25", "lib/node_modules/openclaw/openclaw.mjs"},
                               {},
                               {"new"},
                               {{"a%20b%0A%25", {.was = "600", .is = "700"}}}}));
    fs::remove_all(f.home.runtimeDir());
    EXPECT_EQ(f.check().trees[0].state, State::gone);
}

TEST(Provenance, doubtsARecordThatIsDamagedOrContradictsItself) {
    const std::pair<Record, std::function<void(Installed&, std::string&)>> cases[] = {
        {Record::good, [](auto&, auto&) {}},
        {Record::unsigned_, [](auto& f, auto&) { f.signatureIsGood = false; }},
        {Record::unreadable, [](auto&, auto& json) { json.pop_back(), json.pop_back(); }},
        {Record::mismatch, [](auto&, auto& json) { json.replace(json.find("f 600"), 5, "f 700"); }},
        {Record::mismatch, [](auto&, auto& json) { json.replace(json.find("bbbb\",\"ins"), 1, "c"); }},
        {Record::mismatch, [](auto&, auto& json) { json.replace(json.rfind("2026.5.1"), 8, "2026.5.2"); }},
    };
    for (const auto& [record, damage] : cases) {
        Installed f;
        auto json = Provenance::read(f.home).value().json();
        damage(f, json);
        write(Provenance::pathIn(f.home), json);
        EXPECT_EQ(f.check().record, record) << json.substr(0, 300);
    }
    Installed f;
    fs::rename(Provenance::pathIn(f.home), f.folder.path() + "/moved");
    EXPECT_EQ(f.check().record, Record::absent);
    fs::create_symlink(f.folder.path() + "/moved", Provenance::pathIn(f.home));
    EXPECT_EQ(f.check().record, Record::unreadable) << "links are not followed";
}

// A runtime that was installed before records existed.
TEST(Provenance, recordsARuntimeThatIsKept) {
    Installed f;
    const auto before = Provenance::read(f.home).value();
    f.make().runtimeKept({.version = "v1"});
    EXPECT_EQ(Provenance::read(f.home), before);
    fs::remove(Provenance::pathIn(f.home));
    auto record = f.make();
    record.runtimeKept({.version = "v1"});
    record.packageReplaced({.sha256 = std::string(64, 'b')}, record.list(f.home.appDir()));
    EXPECT_EQ(f.check().trees[0].state, State::unknownOrigin);
    EXPECT_TRUE(f.check().isGood());
}

}  // namespace
}  // namespace tarnik
