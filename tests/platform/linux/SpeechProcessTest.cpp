#include "platform/linux/speech/SpeechProcess.h"

#include "support/Printers.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

/// A "synthesizer" that notes its process and its text, and then speaks until it is cut off.
struct Voice {
    QStringList said() const
    {
        QFile file(folder.filePath(u"said"_s));
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                                          : QStringList();
    }
    SpeechCommand command(const QString &end) const
    {
        return {u"/bin/sh"_s,
            {u"-c"_s, u"read -r text; echo \"$$ $text\" >>\"$0\"; "_s + end, folder.filePath(u"said"_s)}};
    }

    QTemporaryDir folder;
};

bool runs(const QString &line)
{
    return QFile::exists(u"/proc/"_s + line.section(u' ', 0, 0) + u"/cwd"_s);
}

TEST(SpeechProcess, ANewWordCutsOffTheOldOne)
{
    const Voice voice;
    SpeechProcess speech(voice.command(u"exec sleep 600"_s));
    speech.speak(u"-x is one text"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return voice.said().size() == 1; }));
    EXPECT_EQ(voice.said().constFirst().section(u' ', 1), u"-x is one text"_s);
    EXPECT_TRUE(runs(voice.said().constFirst()));
    speech.speak(u"two"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return voice.said().size() == 2; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !runs(voice.said().constFirst()); }));
    EXPECT_TRUE(runs(voice.said().constLast()));
}

TEST(SpeechProcess, WithoutAVoiceItIsSilent)
{
    SpeechProcess none(SpeechCommand{});
    none.speak(u"word"_s);
    SpeechProcess missing(SpeechCommand{u"/nonexistent/voice"_s, {}});
    missing.speak(u"word"_s);
    missing.speak(u"again"_s);
    QTest::qWait(50); // the first one's failure is heard of, and the leak check finds nothing of it
}

} // namespace
