#include "platform/linux/speech/SpeechProcess.h"

#include "support/Printers.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

/// A "synthesizer" that notes its process and its text, and then speaks until it is cut off.
struct Voice {
    QStringList said() const
    {
        QFile file(folder.filePath(QStringLiteral("said")));
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                                          : QStringList();
    }
    SpeechCommand command(const QString &end) const
    {
        return {QStringLiteral("/bin/sh"),
            {QStringLiteral("-c"), QStringLiteral("read -r text; echo \"$$ $text\" >>\"$0\"; ") + end,
                folder.filePath(QStringLiteral("said"))}};
    }

    QTemporaryDir folder;
};

bool runs(const QString &line)
{
    return QFile::exists(QStringLiteral("/proc/") + line.section(u' ', 0, 0) + QStringLiteral("/cwd"));
}

TEST(SpeechProcess, ANewWordCutsOffTheOldOne)
{
    const Voice voice;
    SpeechProcess speech(voice.command(QStringLiteral("exec sleep 600")));
    speech.speak(QStringLiteral("-x is one text"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return voice.said().size() == 1; }));
    EXPECT_EQ(voice.said().constFirst().section(u' ', 1), QStringLiteral("-x is one text"));
    EXPECT_TRUE(runs(voice.said().constFirst()));
    speech.speak(QStringLiteral("two"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return voice.said().size() == 2; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !runs(voice.said().constFirst()); }));
    EXPECT_TRUE(runs(voice.said().constLast()));
}

TEST(SpeechProcess, WithoutAVoiceItIsSilent)
{
    SpeechProcess none(SpeechCommand{});
    none.speak(QStringLiteral("word"));
    SpeechProcess missing(SpeechCommand{QStringLiteral("/nonexistent/voice"), {}});
    missing.speak(QStringLiteral("word"));
    missing.speak(QStringLiteral("again"));
    QTest::qWait(50); // the first one's failure is heard of, and the leak check finds nothing of it
}

} // namespace
