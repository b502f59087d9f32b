#include "core/pairing/JoinLink.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

const std::string code = "Ab0_-Ab0_-Ab0_-Ab0_-Zz";
const Url origin = *Url::parse("https://Tarnik.example");
const Url localOrigin = *Url::parse("http://localhost:8787/");

TEST(JoinLink, takesOnlyWholeCodes) {
    struct Case {
        const char* why;
        std::string text;
        std::optional<std::string> code;
    };
    const Case cases[] = {
        {"a bare code", code, code},
        {"blanks around it, as pasted", "  \xE2\x80\x89" + code + "\n", code},
        {"one letter short", code.substr(1), std::nullopt},
        {"one letter more", code + "A", std::nullopt},
        {"a line break within", code.substr(1) + "\nA", std::nullopt},
        {"a NUL behind", code + std::string(1, '\0'), std::nullopt},
        {"standard base64", code.substr(1) + "+", std::nullopt},
        {"padding", code.substr(1) + "=", std::nullopt},
        {"a letter beyond ASCII", code.substr(2) + "\xC3\xA9", std::nullopt},
        {"nothing", "", std::nullopt},
        {"a megabyte of blanks", std::string(1'000'000, ' ') + code, std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(JoinLink::code(c.text, origin), c.code) << c.why;
    EXPECT_TRUE(JoinLink::isCode(code));
    EXPECT_FALSE(JoinLink::isCode(code + "\n"));
}

TEST(JoinLink, takesTheFirstCodeOfAnAppLink) {
    const std::string percentCode = "%41" + code.substr(1);
    struct Case {
        std::string text;
        bool accepted;
    };
    const Case cases[] = {
        {"tarnik://connect?code=" + code, true},
        {" TARNIK://CONNECT?code=" + code + "\r\n", true},
        {"tarnik://connect/?x=1&code=" + code + "&code=other#f", true},
        {"tarnik://connect?c%6Fde=" + percentCode, true},
        {"tarnik://connect?code=%25" + percentCode.substr(1), false},
        {"tarnik://connect?code=other&code=" + code, false},
        {"tarnik://connect?code&code=" + code, false},
        {"tarnik://connect?code=", false},
        {"tarnik://connect?Code=" + code, false},
        {"tarnik://connect?code=" + code.substr(1) + "+", false},
        {"tarnik://connect?code=" + code + "%00", false},
        {"tarnik://connect", false},
        {"tarnik://connect#?code=" + code, false},
        {"tarnik://connect.example?code=" + code, false},
        {"tarnik://%63onnect?code=" + code, false},
        {"tarnik:connect?code=" + code, false},
        {"tarniks://connect?code=" + code, false},
    };
    for (const auto& c : cases) EXPECT_EQ(JoinLink::code(c.text, origin).has_value(), c.accepted) << c.text;
    EXPECT_EQ(JoinLink::code("tarnik://connect?code=" + percentCode, origin), "A" + code.substr(1));
    EXPECT_EQ(JoinLink::code("tarnik://connect?code=" + std::string(1'000'000, 'a'), origin), std::nullopt);
}

TEST(JoinLink, takesWebLinksOfTheOriginOnly) {
    struct Case {
        std::string text;
        bool accepted;
    };
    const Case cases[] = {
        {"https://tarnik.example/c/" + code, true},
        {"HTTPS://TARNIK.Example//c//" + code + "/?code=x#y", true},
        {"http://tarnik.example/c/" + code, false},
        {"https://tarnik.example:443/c/" + code, false},
        {"https://tarnik.example:65979/c/" + code, false},
        {"https://tarnik.example:/c/" + code, false},
        {"https://x.tarnik.example/c/" + code, false},
        {"https://tarnik.example@evil.example/c/" + code, false},
        {"https://evil.example@tarnik.example/c/" + code, false},
        {"https://@tarnik.example/c/" + code, false},
        {"https://tarnik%2Eexample/c/" + code, false},
        {"https:///c/" + code, false},
        {"tarnik.example/c/" + code, false},
        {"https://tarnik.example/C/" + code, false},
        {"https://tarnik.example/%63/" + code, false},
        {"https://tarnik.example/c%2F" + code, false},
        {"https://tarnik.example/c/%41" + code.substr(1), false},
        {"https://tarnik.example/c/" + code + "/app", false},
        {"https://tarnik.example/c/" + code.substr(1), false},
        {"https://tarnik.example/c/", false},
        {"https://tarnik.example/" + code, false},
    };
    for (const auto& c : cases) EXPECT_EQ(JoinLink::code(c.text, origin).has_value(), c.accepted) << c.text;
    EXPECT_EQ(JoinLink::code(cases[1].text, origin), code);

    EXPECT_EQ(JoinLink::code("http://localhost:8787/c/" + code, localOrigin), code);
    EXPECT_FALSE(JoinLink::code("http://localhost:08787/c/" + code, localOrigin));
    EXPECT_FALSE(JoinLink::code("http://localhost:74323/c/" + code, localOrigin)) << "8787 + 65536";
    EXPECT_FALSE(JoinLink::code("http://localhost/c/" + code, localOrigin));
}

TEST(JoinLink, asksAtTheOrigin) {
    EXPECT_EQ(JoinLink::answerURL(code, origin).text(), "https://Tarnik.example/c/" + code + "/app");
    EXPECT_EQ(JoinLink::answerURL(code, localOrigin).text(), "http://localhost:8787/c/" + code + "/app");
}

TEST(JoinLink, takesTheJoinAddressOfAGoodAnswer) {
    const std::string good = "https://Join.example:8/x/c/" + code;
    struct Case {
        std::string version;
        std::string join;
        bool accepted;
    };
    const Case cases[] = {
        {"1", good, true},
        {"1.0", good, true},
        {"2", good, false},
        {"true", good, false},
        {"\"1\"", good, false},
        {"1.5", good, false},
        {"1e400", good, false},
        {"1", "http://localhost/c/" + code, true},
        {"1", "HTTP://LocalHost:9/c/" + code, true},
        {"1", "http://127.0.0.1:65535/c/" + code, true},
        {"1", "http://127.0.0.1:65536/c/" + code, false},
        {"1", "http://join.example/c/" + code, false},
        {"1", "http://127.0.0.1.example/c/" + code, false},
        {"1", "http://localhost@join.example/c/" + code, false},
        {"1", "ws://localhost/c/" + code, false},
        {"1", "https:///c/" + code, false},
        {"1", "https://u@join.example/c/" + code, false},
        {"1", good + "?", false},
        {"1", good + "#", false},
        {"1", good + "/", false},
        {"1", "https://join.example/c/" + code.substr(1) + "z", false},
        {"1", "https://join.example/x%2Fc/" + code, false},
        {"1", "https://join.example/xc/" + code, false},
        {"1", " " + good, false},
    };
    for (const auto& c : cases) {
        const auto url = JoinLink::joinURL(R"({"v":)" + c.version + R"(,"join":")" + c.join + "\"}", code);
        EXPECT_EQ(url ? url->text() : "none", c.accepted ? c.join : "none") << c.version;
    }
    for (const std::string& answer :
         {std::string(), std::string("[1]"), std::string(R"({"v":1})"), R"({"join":")" + good + "\"}",
          std::string(R"({"v":1,"join":1})"), R"({"v":1,"join":")" + good + "\"} x",
          R"({"v":1,"join":")" + good + R"(","more":")" + std::string(1'000'000, ' ') + "\"}"})
        EXPECT_FALSE(JoinLink::joinURL(answer, code)) << answer.substr(0, 100);
}

}  // namespace
}  // namespace tarnik
