#include "practice/CommandLine.h"

#include <gtest/gtest.h>

namespace nimbrelle::practice {

static auto read(std::vector<std::string_view> arguments)
{
    return readCommandLine(arguments);
}

TEST(CommandLine, TakesEveryOption)
{
    const auto parsed = read({"--port", "8080", "--delay-ms", "0", "--fail", "slow", "--port-file", "p"});
    ASSERT_TRUE(std::holds_alternative<CommandLine>(parsed));
    const auto &line = std::get<CommandLine>(parsed);
    EXPECT_EQ(line.server.port, 8080);
    EXPECT_EQ(line.server.delay.count(), 0);
    EXPECT_EQ(line.server.failure, Failure::slow);
    EXPECT_EQ(line.portFile, "p");
    EXPECT_EQ(line.mode, Mode::serve);
    EXPECT_EQ(std::get<CommandLine>(read({"--words"})).mode, Mode::listWords);
}

TEST(CommandLine, SaysWhatIsWrong)
{
    const std::vector<std::vector<std::string_view>> wrong = {{"--port"}, {"--port", "65536"},
        {"--port", "-1"}, {"--port", "1x"}, {"--port", ""}, {"--delay-ms", "99999999"}, {"--fail", "403"},
        {"--port-file", ""}, {"--what"}, {"stray"}};
    for (const auto &arguments : wrong)
        EXPECT_TRUE(std::holds_alternative<std::string>(read(arguments))) << arguments.back();
}

} // namespace nimbrelle::practice
