#include "shell/GrowthGenerator.h"

#include "frame/AtomicFile.h"
#include "frame/Clock.h"
#include "frame/Failure.h"
#include "frame/LocalDateTime.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

/// The beginning of every script of ours, whichever version wrote it.
constexpr QByteArrayView mark{"#!/usr/bin/python3\n# nimbrelle-growth-archive\n"};

Failure failed(const QString &what, const QString &path, const WriteResult &result)
{
    return Failure(what.arg(path, result.reason()));
}

/// As a literal that means the same bytes whatever they are.
QByteArray bytesLiteral(const QByteArray &bytes)
{
    QByteArray literal = "b\"";
    for (const char c : bytes) {
        const bool isPlain = c > ' ' && c < 127 && c != '"' && c != '\\';
        literal += isPlain ? QByteArray(1, c) : "\\x" + QByteArray(1, c).toHex();
    }
    return literal + '"';
}

/// Makes the folder if it is missing, and closes it to everybody else's writing.
void prepareFolder(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), 0700) != 0 && errno != EEXIST)
        throw failed(u"建不了文件夹 %1：%2"_s, path, WriteResult::ofErrno());
    struct stat status { };
    if (::lstat(name.constData(), &status) != 0 || !S_ISDIR(status.st_mode) || status.st_uid != ::geteuid())
        throw Failure(u"%1 不是自己的文件夹，没有安装。"_s.arg(path));
    if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        ::chmod(name.constData(), status.st_mode & 07777 & ~mode_t{S_IWGRP | S_IWOTH});
}

/// Also a link that leads nowhere.
bool isThere(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() || file.isSymLink();
}

} // namespace

GrowthGenerator::GrowthGenerator(const AppPaths &paths, QString program, const Clock &clock)
    : m_folder(paths), m_program(std::move(program)), m_clock(clock)
{
}

// The report's place is told by that of the script, so that the folder may be moved.
QByteArray GrowthGenerator::text() const
{
    return mark.toByteArray()
        + R"(# Has Nimbrelle write the growth archive. Its settings put this here, and take it away again.
import os
import sys

program = )"
        + bytesLiteral(QFile::encodeName(m_program)) + R"(
folder = os.path.dirname(os.path.dirname(os.path.abspath(sys.argv[0])))
os.execv(program, [program, "--growth-archive", os.path.join(folder, "成长档案.html")])
)";
}

GrowthGenerator::State GrowthGenerator::state() const
{
    const QString script = m_folder.script();
    if (!isThere(script))
        return State::absent;
    const QByteArray there =
        QFileInfo(script).isSymLink() ? QByteArray() : readFile(script).value_or(QByteArray());
    if (!there.startsWith(mark))
        return State::foreign;
    if (!m_folder.hasOwnScript())
        return State::unsafe;
    return there == text() ? State::installed : State::outdated;
}

void GrowthGenerator::install() const
{
    for (const QString &folder : {m_folder.path(), m_folder.programs()})
        prepareFolder(folder);
    if (state() == State::foreign)
        keepForeign();
    const QString script = m_folder.script();
    if (const WriteResult result = replaceFile(script, text(), FileMode::ownerOnly); !result)
        throw failed(u"写不了 %1：%2"_s, script, result);
    ::chmod(QFile::encodeName(script).constData(), 0700);
    if (!m_folder.hasOwnScript())
        throw Failure(
            u"装好了，但别人也能改 %1，所以菜单不会用它。"_s.arg(QFileInfo(m_folder.path()).path()));
}

void GrowthGenerator::keepForeign() const
{
    const QString kept = m_folder.programs()
        + u"/journey.kept-%1.py"_s.arg(localDateTime(m_clock.now()).toString(fileTimeForm));
    if (isThere(kept)
        || ::rename(QFile::encodeName(m_folder.script()).constData(), QFile::encodeName(kept).constData())
            != 0)
        throw Failure(u"原来的 %1 没法改名留着，没有安装。"_s.arg(m_folder.script()));
}

void GrowthGenerator::remove() const
{
    if (const State at = state(); at == State::absent || at == State::foreign)
        return;
    if (!QFile::remove(m_folder.script()))
        throw Failure(u"移除不了 %1。"_s.arg(m_folder.script()));
    if (QDir().rmdir(m_folder.programs())) // only an empty one goes
        QDir().rmdir(m_folder.path());
}

QString GrowthGenerator::buttonText(State state)
{
    switch (state) {
    case State::absent:
    case State::foreign:
        return u"安装"_s;
    case State::installed:
        return u"移除"_s;
    case State::outdated:
    case State::unsafe:
        return u"重新安装"_s;
    }
    return {};
}

QString GrowthGenerator::note(State state) const
{
    if (!QFileInfo::exists(QString::fromLatin1(GrowthFolder::interpreter)))
        return u"菜单里的「成长档案」要用 Python 3（%1），这台电脑上没有。"_s.arg(
            QString::fromLatin1(GrowthFolder::interpreter));
    switch (state) {
    case State::absent:
        return u"装好后，菜单里会有「成长档案」：一页自己的记录，看每个月遇到、留下、记牢了什么。只写在这台电脑上。"_s;
    case State::installed:
        return u"在菜单里点「成长档案」，就会写好并打开。写在 %1。"_s.arg(m_folder.report());
    case State::outdated:
        return u"Nimbrelle 换了地方，重新安装后菜单才找得到它。"_s;
    case State::unsafe:
        return u"别人也能改这个文件夹里的东西，所以菜单里没有「成长档案」。重新安装会收紧权限。"_s;
    case State::foreign:
        return u"那里已经有一个别的 journey.py；安装时会把它改名留在旁边。"_s;
    }
    return {};
}

void GrowthGenerator::toggle() const
{
    if (state() == State::installed)
        remove();
    else
        install();
}

} // namespace nimbrelle
