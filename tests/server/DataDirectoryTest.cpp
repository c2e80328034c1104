#include "server/DataDirectory.h"

#include "server/Failure.h"
#include "server/Identity.h"
#include "server/support/Stage.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

using namespace nimbrelle::server;
using testing::HasSubstr;

namespace {

std::string failureOf(const std::function<void()> &work)
{
    try {
        work();
        return "";
    } catch (const Failure &failure) {
        return failure.what();
    }
}

} // namespace

TEST(DataDirectory, AllInItIsForItsOwnerOnly)
{
    const ScratchFolder scratch;
    const DataDirectory directory(scratch.path() / "a/b");
    EXPECT_THAT(failureOf([&] { directory.requirePrivate(); }), HasSubstr("nimbrelle-server init"));
    directory.create();
    writePrivateFile(directory.key(), "key");
    struct stat status { };
    ASSERT_EQ(::stat(directory.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    ASSERT_EQ(::stat(directory.key().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    EXPECT_EQ(failureOf([&] { directory.requirePrivate(); }), "");

    ::chmod(directory.key().c_str(), 0640);
    EXPECT_THAT(failureOf([&] { directory.requirePrivate(); }), HasSubstr("chmod 600"));
    ::chmod(directory.path().c_str(), 0750);
    EXPECT_THAT(failureOf([&] { directory.requirePrivate(); }), HasSubstr("chmod 700"));
}

TEST(Identity, DamagedOrMixedUpFilesSaySo)
{
    const ScratchFolder scratch;
    const DataDirectory directory(scratch.path());
    const auto failure = [&] { return failureOf([&] { loadIdentity(directory); }); };
    EXPECT_THAT(failure(), HasSubstr("server.key"));
    const Identity identity = makeIdentity("localhost");
    writePrivateFile(directory.key(), identity.key);
    writePrivateFile(directory.certificate(), identity.certificate);
    EXPECT_EQ(failure(), "");
    EXPECT_EQ(loadIdentity(directory).pin(), identity.pin());
    writePrivateFile(directory.certificate(), makeIdentity("localhost").certificate);
    EXPECT_THAT(failure(), HasSubstr("do not belong together"));
    writePrivateFile(directory.key(), identity.key.substr(0, 100));
    EXPECT_THAT(failure(), HasSubstr("damaged"));
}
