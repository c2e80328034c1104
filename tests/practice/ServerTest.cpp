#include "practice/Server.h"

#include "PracticeLexicon.h"

#include <gtest/gtest.h>

namespace nimbrelle::practice {

TEST(Server, TakesAFreePortAndSaysWhenOneIsTaken)
{
    const Server server(practiceLexicon(), {});
    EXPECT_NE(server.port(), 0);
    ServerOptions taken;
    taken.port = server.port();
    EXPECT_THROW(Server(practiceLexicon(), taken), ServerError);
}

} // namespace nimbrelle::practice
