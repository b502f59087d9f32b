#include "core/pairing/JoinLink.h"

#include <gtest/gtest.h>

#include "tests/support/Words.h"

namespace tarnik {
namespace {

const std::string code = "Ab0_-Ab0_-Ab0_-Ab0_-Zz";
const std::string encodedCode = "%41" + code.substr(1);
const Url origin = *Url::parse("https://Tarnik.example");
const Url localOrigin = *Url::parse("http://localhost:8787/");

// The code stands for each "*".
std::vector<std::string> links(const std::string& text) {
    std::string filled;
    for (const char letter : text) filled += letter == '*' ? code : std::string(1, letter);
    return words(filled);
}

void expectAll(const std::vector<std::string>& texts, const Url& webOrigin,
               const std::optional<std::string>& found) {
    for (const auto& text : texts) {
        const auto expected = found ? std::optional(JoinCode{*found, text}) : std::nullopt;
        EXPECT_EQ(JoinLink::code(text, webOrigin), expected) << text.substr(0, 100);
    }
}

TEST(JoinLink, takesOnlyWholeCodes) {
    expectAll({code, "  \u2009" + code + "\n"}, origin, code);
    const std::string most = code.substr(1);
    expectAll(
        {"", most, code + "A", most + "\nA", code + '\0', most + "+", std::string(1'000'000, ' ') + code},
        origin, std::nullopt);
    EXPECT_FALSE(JoinLink::isCode(code + "\n"));
}

TEST(JoinLink, takesTheFirstCodeOfAnAppLink) {
    expectAll(
        links("tarnik://connect?code=* TARNIK://CONNECT?code=* tarnik://connect/?x=1&code=*&code=other#f "
              "tarnik://connect?c%6Fde=*"),
        origin, code);
    expectAll({"tarnik://connect?code=" + encodedCode}, origin, "A" + code.substr(1));
    expectAll({"tarnik://connect?code=%25" + encodedCode.substr(1),
               "tarnik://connect?code=" + code.substr(1) + "+"},
              origin, std::nullopt);
    expectAll(links("tarnik://connect?code=other&code=* tarnik://connect?code&code=* tarnik://connect?code= "
                    "tarnik://connect?Code=* tarnik://connect?code=*%00 tarnik://connect#?code=* "
                    "tarnik://connect.example?code=* tarnik://%63onnect?code=* tarnik:connect?code=* "
                    "tarniks://connect?code=*"),
              origin, std::nullopt);
}

TEST(JoinLink, takesWebLinksOfTheOriginOnly) {
    const std::string address = "HTTPS://TARNIK.Example//c//" + code + "/";
    const std::string anything = "a|b [c] \u00E9 100%\n";
    expectAll({address, address + "?code=x#y", address + "?" + anything + "z",
               address + "#?" + anything + "#", "tarnik://connect?code=" + code + "#" + anything},
              origin, code);
    expectAll({"https://tarnik.example/c|/" + code, "https://tarnik .example/c/" + code + "?a b",
               "https:/?" + anything},
              origin, std::nullopt);
    expectAll(
        links("http://tarnik.example/c/* https://tarnik.example:443/c/* https://tarnik.example:65979/c/* "
              "https://tarnik.example:/c/* https://x.tarnik.example/c/* https:///c/* tarnik.example/c/* "
              "https://tarnik.example@evil.example/c/* https://evil.example@tarnik.example/c/* "
              "https://@tarnik.example/c/* https://tarnik%2Eexample/c/* https://tarnik.example/C/* "
              "https://tarnik.example/%63/* https://tarnik.example/c%2F* https://tarnik.example/c/*/app "
              "https://tarnik.example/c/x* https://tarnik.example/c/ https://tarnik.example/*"),
        origin, std::nullopt);
    expectAll({"https://tarnik.example/c/" + encodedCode}, origin, std::nullopt);

    expectAll(links("http://localhost:8787/c/*"), localOrigin, code);
    // The second port is 8787 + 65536.
    expectAll(links("http://localhost:08787/c/* http://localhost:74323/c/* http://localhost/c/*"),
              localOrigin, std::nullopt);
}

TEST(JoinLink, asksAtTheOrigin) {
    EXPECT_EQ(JoinLink::answerURL(code, origin).text(), "https://Tarnik.example/c/" + code + "/app");
    EXPECT_EQ(JoinLink::answerURL(code, localOrigin).text(), "http://localhost:8787/c/" + code + "/app");
}

std::string joinAddress(const std::string& answer) {
    const auto url = JoinLink::joinURL(answer, code);
    return url ? url->text() : "none";
}

TEST(JoinLink, takesTheJoinAddressOfAGoodAnswer) {
    const std::string good = "https://Join.example:8/x/c/" + code;
    const auto answer = [](const std::string& version, const std::string& join) {
        return R"({"v":)" + version + R"(,"join":")" + join + "\"}";
    };
    for (const char* version : {"1", "1.0"}) EXPECT_EQ(joinAddress(answer(version, good)), good);
    for (const auto& version : words("2 true \"1\" 1.5 1e400"))
        EXPECT_EQ(joinAddress(answer(version, good)), "none") << version;

    for (const auto& join : links("http://localhost/c/* HTTP://LocalHost:9/c/* http://127.0.0.1:65535/c/*"))
        EXPECT_EQ(joinAddress(answer("1", join)), join);
    for (const auto& join :
         links("http://127.0.0.1:65536/c/* http://join.example/c/* http://127.0.0.1.example/c/* "
               "http://localhost@join.example/c/* ws://localhost/c/* https:///c/* https://u@join.example/c/* "
               "https://join.example/c/*? https://join.example/c/*# https://join.example/c/*/ "
               "https://join.example/c/*z https://join.example/x%2Fc/* https://join.example/xc/*"))
        EXPECT_EQ(joinAddress(answer("1", join)), "none") << join;

    const std::string padding(1'000'000, ' ');
    for (const auto& other :
         {std::string(), std::string("[1]"), std::string(R"({"v":1})"), R"({"join":")" + good + "\"}",
          std::string(R"({"v":1,"join":1})"), answer("1", " " + good), answer("1", good) + padding})
        EXPECT_EQ(joinAddress(other), "none") << other.substr(0, 100);
}

}  // namespace
}  // namespace tarnik
