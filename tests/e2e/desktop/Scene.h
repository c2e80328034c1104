#pragma once

#include "Accessible.h"
#include "Programs.h"
#include "frame/AppConfig.h"
#include "notebook/WordEntry.h"
#include "support/OtherXClient.h"

#include <QImage>
#include <QLabel>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace nimbrelle {

/// The keys that the tests press.
namespace keysym {
inline constexpr quint32 escape = 0xff1b;
inline constexpr quint32 enter = 0xff0d;
inline constexpr quint32 tab = 0xff09;
inline constexpr quint32 down = 0xff54;
inline constexpr quint32 space = 0x20;
inline constexpr quint32 alt = 0xffe9;
inline constexpr quint32 super = 0xffeb;
inline constexpr quint32 control = 0xffe3;
} // namespace keysym

/// One program under test or beside it; ends with this object.
class Running {
public:
    ~Running();

    void start(const QString &program, const QStringList &arguments = {},
        const QMap<QString, QString> &environment = {});
    qint64 id() const { return m_process.processId(); }
    void signal(int number) const;
    /// Waits until it ends by itself; absent when it does not, or when it crashes.
    std::optional<int> exitCode();
    QProcess &process() { return m_process; }

private:
    QProcess m_process;
};

/// The program in a session with a practice provider, another program to read in, and a user.
class Scene : public testing::Test {
protected:
    Scene();

    void SetUp() override;
    /// Keeps a picture of how it ended.
    void TearDown() override;

    /// Starts the program and waits until it watches.
    void startProgram();
    /// A settings file for the program's next start.
    void writeConfig(const AppConfig &config) const;
    AppConfig practiceConfig() const { return practiceConfig(provider); }
    static AppConfig practiceConfig(const RunningServer &provider);
    /// The notebook as it is on the disk.
    QList<WordEntry> notebook() const;

    /// Opens an editor on a text; the test is skipped by name where the editor is not installed.
    void openEditor(const QString &text);
    QString editorText() const;
    /// Where a piece of the editor's text stands, in pixels.
    QRect inEditor(const QString &piece) const;

    /// Shows a picture of a text in a window of another program than the one under test, and returns where
    /// `word` stands in it, in pixels.
    QRect showPicture(const QStringList &lines, const QString &word);

    void doubleClick(QPoint at);
    void click(QPoint at);
    void rest(QPoint at);
    void type(const QString &text);
    void tapTwice(quint32 keysym);
    void tapWithControl(char letter);

    /// @name What the program shows
    /// @{
    virtual QList<AccessiblePart> shown() const { return accessible.shownBy(program.id()); }
    /// By name and, if given, role; absent while it is not on the screen.
    std::optional<AccessiblePart> find(const QString &name, const QString &role = {}) const;
    QString textOf(const QString &name) const;
    bool appears(const QString &name, int patienceMs = 5000) const;
    bool disappears(const QString &name, int patienceMs = 5000) const;
    /// Whether any text on the screen holds this.
    bool says(const QString &text, int patienceMs = 5000) const;
    /// Where a part stands once it moves no more; empty while it is not on the screen.
    QRect restingArea(const QString &name) const;
    void press(const QString &name);
    /// @}

    QImage screenImage() const;
    /// A picture of the whole screen among the artefacts.
    void shoot(const QString &what) const;

    AccessibleDesktop accessible;
    OtherXClient user;
    QTemporaryDir folder;
    RunningServer provider;
    Running program;
    Running editor;
    QLabel picture;
};

} // namespace nimbrelle
