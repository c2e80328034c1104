#include "looks/Looks.h"

#include "support/ViewStage.h"

#include <QDir>
#include <QPainter>

#include <gtest/gtest.h>

/// Shows every screen in every state, and looks for what is cut off, overlaps or has no name. With
/// NIMBRELLE_LOOK_DIR set the pictures are kept there, to be looked at.
namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

struct Room {
    const char *name;
    void (*show)(const Look &look, const Show &show);
};

bool isOurs(const QWidget &widget)
{
    return widget.isVisible() && !widget.objectName().isEmpty() && !widget.objectName().startsWith(u"qt_");
}

void expectWhole(const QWidget &widget)
{
    const QWidget *holder = widget.parentWidget();
    EXPECT_TRUE(holder->rect().contains(widget.geometry()) || holder->objectName().startsWith(u"qt_"));
    if (const auto *edit = qobject_cast<const QTextEdit *>(&widget); edit && edit->isReadOnly())
        EXPECT_GE(edit->height(), edit->heightForWidth(edit->width()));
    if (const auto *label = qobject_cast<const QLabel *>(&widget)) {
        if (label->wordWrap())
            EXPECT_GE(label->height(), label->heightForWidth(label->width()));
        else
            EXPECT_GE(label->width(), label->sizeHint().width());
    }
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
        EXPECT_FALSE(button->text().isEmpty() && button->accessibleName().isEmpty());
        if (!button->text().isEmpty())
            EXPECT_GE(button->width(), button->sizeHint().width());
    }
}

void expectApart(const QList<const QWidget *> &controls)
{
    for (qsizetype i = 0; i < controls.size(); ++i)
        for (qsizetype j = i + 1; j < controls.size(); ++j)
            EXPECT_FALSE(controls[i]->parent() == controls[j]->parent()
                && controls[i]->geometry().intersects(controls[j]->geometry()))
                << controls[i]->objectName().toStdString() << " and "
                << controls[j]->objectName().toStdString();
}

void check(const QWidget &page)
{
    QList<const QWidget *> controls;
    for (const QWidget *widget : page.findChildren<QWidget *>()) {
        if (!isOurs(*widget))
            continue;
        SCOPED_TRACE(widget->objectName().toStdString());
        expectWhole(*widget);
        if (qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QLineEdit *>(widget))
            controls.append(widget);
    }
    expectApart(controls);
}

void keep(QWidget &page, const QString &name, double scale)
{
    const QString folder = qEnvironmentVariable("NIMBRELLE_LOOK_DIR");
    if (folder.isEmpty())
        return;
    QDir().mkpath(folder);
    const double ratio = scale > 1 ? 1 : 2;
    QImage image(page.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    const QColor ground = page.palette().color(QPalette::Window);
    image.fill(page.windowType() == Qt::ToolTip ? ground.darker(120) : ground); // behind the card's shadow
    page.render(&image, {}, {}, QWidget::DrawChildren);
    image.save(folder + u'/' + name + u".png"_s);
}

class Looks : public testing::TestWithParam<std::tuple<Room, Look>> { };

TEST_P(Looks, NothingIsCutOffOrOverlapsOrHasNoName)
{
    const auto &[room, look] = GetParam();
    room.show(look, [&](QWidget &page, const char *state) {
        SCOPED_TRACE(state);
        ViewStage::settle();
        check(page);
        keep(page,
            u"%1-%2-%3"_s.arg(
                QLatin1StringView(room.name), QLatin1StringView(state), QLatin1StringView(look.name)),
            look.scale);
    });
}

std::string nameOf(const testing::TestParamInfo<std::tuple<Room, Look>> &info)
{
    return std::string(std::get<Room>(info.param).name) + "_" + std::get<Look>(info.param).name;
}

INSTANTIATE_TEST_SUITE_P(, Looks,
    testing::Combine(testing::Values(Room{"card", showCard}, Room{"ask", showAsk}, Room{"coach", showCoach},
                         Room{"review", showReview}, Room{"settings", showSettings},
                         Room{"addWord", showAddWord}, Room{"wordList", showWordList}),
        testing::Values(Look{"light", Theme::Scheme::light, 1}, Look{"dark", Theme::Scheme::dark, 1},
            Look{"large", Theme::Scheme::light, 2})),
    nameOf);

} // namespace

} // namespace nimbrelle
