#include "Scene.h"

#include "frame/RecordFile.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QStandardPaths>
#include <QStyleHints>

#include <csignal>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 20'000;

QString addressIn(const QString &line)
{
    const qsizetype at = line.indexOf(u"http://"_s);
    return at < 0 ? QString() : line.mid(at).section(u' ', 0, 0);
}

} // namespace

Running::~Running()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    signal(SIGCONT);
    m_process.terminate();
    if (!m_process.waitForFinished(patience)) {
        ADD_FAILURE() << m_process.program().toStdString() << " does not end";
        m_process.kill();
        m_process.waitForFinished();
    }
}

void Running::start(
    const QString &program, const QStringList &arguments, const QMap<QString, QString> &environment)
{
    auto variables = QProcessEnvironment::systemEnvironment();
    for (auto each = environment.begin(); each != environment.end(); ++each)
        variables.insert(each.key(), each.value());
    m_process.setProcessEnvironment(variables);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(program, arguments);
    ASSERT_TRUE(m_process.waitForStarted()) << program.toStdString();
}

void Running::signal(int number) const
{
    ::kill(static_cast<pid_t>(id()), number);
}

std::optional<int> Running::exitCode()
{
    const bool hasEnded = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(patience);
    if (!hasEnded || m_process.exitStatus() != QProcess::NormalExit)
        return std::nullopt;
    return m_process.exitCode();
}

Scene::Scene() : provider(QStringLiteral(NIMBRELLE_PRACTICE), {u"--delay-ms"_s, u"5"_s}) { }

void Scene::SetUp()
{
    awaitDesktop();
    hand().moveTo({1200, 700}); // away from what comes
    writeConfig(practiceConfig());
}

void Scene::TearDown()
{
    shoot(u"end"_s);
}

AppConfig Scene::practiceConfig(const RunningServer &provider)
{
    AppConfig config;
    config.apiKey = u"practice"_s;
    config.baseURL = addressIn(provider.firstLine());
    return config;
}

void Scene::writeConfig(const AppConfig &config) const
{
    writeRecordFile(folder.filePath(u"config.json"_s), config, FileMode::ownerOnly);
}

QList<WordEntry> Scene::notebook() const
{
    return readRecordFile<QList<WordEntry>>(folder.filePath(u"words.json"_s)).value_or(QList<WordEntry>());
}

void Scene::startProgram()
{
    program.start(QStringLiteral(NIMBRELLE_PROGRAM), {}, {{u"NIMBRELLE_DATA_DIR"_s, folder.path()}});
    const auto isThere = [&] { return accessible.isListening(program.id()); };
    ASSERT_TRUE(QTest::qWaitFor(isThere, patience)) << program.process().readAll().toStdString();
}

void Scene::openEditor(const QString &text)
{
    if (QStandardPaths::findExecutable(u"mousepad"_s).isEmpty())
        GTEST_SKIP() << "mousepad is not installed";
    const QString path = folder.filePath(u"reading.txt"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(text.toUtf8()) >= 0);
    file.close();
    editor.start(u"mousepad"_s, {u"--disable-server"_s, path});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !inEditor(text.left(5)).isEmpty(); }, patience));
    QTest::qWait(100); // to be painted
}

QString Scene::editorText() const
{
    for (const AccessiblePart &part : accessible.shownBy(editor.id()))
        if (part.role == u"text"_s && part.area.height() > 100)
            return part.text;
    return {};
}

QRect Scene::inEditor(const QString &piece) const
{
    for (const AccessiblePart &part : accessible.shownBy(editor.id()))
        if (part.role == u"text"_s && part.area.height() > 100 && part.text.contains(piece)) {
            const int from = static_cast<int>(part.text.indexOf(piece));
            return accessible.areaOf(part, from, from + static_cast<int>(piece.size()))
                .translated(originOf(editor));
        }
    return {};
}

QRect Scene::showPicture(const QStringList &lines, const QString &word)
{
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(18);
    const QFontMetrics metrics(font);
    QImage image(560, 60 + 30 * static_cast<int>(lines.size()), QImage::Format_RGB32);
    image.fill(QColor(0xf4f4f0));
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(Qt::black);
    QRect found;
    for (int i = 0; i < lines.size(); ++i) {
        const QPoint at(20, 50 + 30 * i);
        painter.drawText(at, lines[i]);
        const qsizetype from = lines[i].indexOf(word);
        if (from >= 0)
            found = QRect(at.x() + metrics.horizontalAdvance(lines[i].left(from)), at.y() - metrics.ascent(),
                metrics.horizontalAdvance(word), metrics.height());
    }
    painter.end();
    picture.setWindowTitle(u"A picture"_s);
    picture.setPixmap(QPixmap::fromImage(image));
    picture.setFixedSize(image.size());
    picture.move(300, 60);
    picture.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&picture));
    QTest::qWait(100);
    return found.translated(picture.mapToGlobal(QPoint(0, 0)));
}

void Scene::rest(QPoint at)
{
    hand().moveTo(at);
}

void Scene::click(QPoint at)
{
    hand().moveTo(at);
    QTest::qWait(30);
    hand().button(1, true);
    QTest::qWait(20);
    hand().button(1, false);
    QTest::qWait(20);
}

void Scene::doubleClick(QPoint at)
{
    QTest::qWait(
        QGuiApplication::styleHints()->mouseDoubleClickInterval()); // else it goes on with a click before
    click(at);
    QTest::qWait(20);
    hand().button(1, true);
    QTest::qWait(20);
    hand().button(1, false);
}

void Scene::type(const QString &text)
{
    for (const QChar letter : text) {
        hand().tap(letter.unicode()); // Latin letters are their own keysyms
        QTest::qWait(15);
    }
}

void Scene::tapTwice(quint32 keysym)
{
    for (int i = 0; i < 2; ++i) {
        hand().key(keysym, true);
        QTest::qWait(30);
        hand().key(keysym, false);
        QTest::qWait(60);
    }
}

void Scene::tapWithControl(char letter)
{
    hand().key(keysym::control, true);
    hand().tap(static_cast<quint32>(letter));
    hand().key(keysym::control, false);
}

std::optional<AccessiblePart> Scene::find(const QString &name, const QString &role) const
{
    for (const AccessiblePart &part : shown())
        if (part.name == name && (role.isEmpty() || part.role == role))
            return part;
    return std::nullopt;
}

QString Scene::textOf(const QString &name) const
{
    return find(name).value_or(AccessiblePart()).text;
}

bool Scene::appears(const QString &name, int patienceMs) const
{
    return QTest::qWaitFor([&] { return find(name).has_value(); }, patienceMs);
}

bool Scene::disappears(const QString &name, int patienceMs) const
{
    return QTest::qWaitFor([&] { return !find(name); }, patienceMs);
}

bool Scene::says(const QString &text, int patienceMs) const
{
    return QTest::qWaitFor(
        [&] {
            for (const AccessiblePart &part : shown())
                if (part.name.contains(text) || part.text.contains(text))
                    return true;
            return false;
        },
        patienceMs);
}

QRect Scene::restingArea(const QString &name) const
{
    const auto area = [&] { return find(name).value_or(AccessiblePart()).area; };
    QRect seen;
    for (QRect now = area(); now != seen; now = area()) {
        seen = now;
        QTest::qWait(100);
    }
    return seen;
}

void Scene::press(const QString &name)
{
    ASSERT_TRUE(appears(name)) << name.toStdString();
    click(restingArea(name).center());
}

void Scene::shoot(const QString &what) const
{
    const QDir artefacts(QStringLiteral(NIMBRELLE_SCREENSHOTS));
    artefacts.mkpath(u"."_s);
    const auto *test = testing::UnitTest::GetInstance()->current_test_info();
    EXPECT_TRUE(
        screenImage().save(artefacts.filePath(QString::fromLatin1(test->name()) + u'-' + what + u".png"_s)));
}

} // namespace nimbrelle
