#pragma once

#include "Accessible.h"
#include "Programs.h"
#include "frame/AppConfig.h"
#include "notebook/WordEntry.h"
#include "support/Hand.h"

#include <QImage>
#include <QLabel>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace nimbrelle {

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

/// The program in a session with a practice provider, another program to read in, and a user. Each kind of
/// session has a scene of its own.
class Scene : public testing::Test {
protected:
    Scene();

    /// @name What the session gives
    /// @{
    virtual Hand &hand() = 0;
    virtual void awaitDesktop() = 0;
    virtual QImage screenImage() const = 0;
    /// What the accessible parts of a program's windows are placed from.
    virtual QPoint originOf(const Running &program) const = 0;
    /// @}

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

    /// A picture of the whole screen among the artefacts.
    void shoot(const QString &what) const;

    AccessibleDesktop accessible;
    QTemporaryDir folder;
    RunningServer provider;
    Running program;
    Running editor;
    QLabel picture;
};

} // namespace nimbrelle
