#pragma once

#include "support/FakeSpeaker.h"
#include "widgets/Theme.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTextEdit>

#include <stdexcept>

namespace nimbrelle {

/// The user before one window: finds what there is to see and to press by its name, and types.
class ViewStage {
public:
    /// Shows the view in that size, in points of the design.
    static void show(QWidget &view, const Theme &theme, QSize size)
    {
        view.resize(theme.points(size.width()), theme.points(size.height()));
        view.show();
        view.activateWindow();
        settle();
    }
    static void settle()
    {
        for (int i = 0; i < 3; ++i) { // a layout may ask for another
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    ViewStage() = default;
    explicit ViewStage(QWidget &view) : m_view(&view) { }
    void use(QWidget &view) { m_view = &view; }

    /// All of that name that can be seen, in reading order.
    template <class Widget = QWidget> QList<Widget *> all(const char *name) const
    {
        QList<Widget *> visible;
        for (Widget *each : m_view->findChildren<Widget *>(QString::fromLatin1(name)))
            if (each->isVisible())
                visible.append(each);
        return visible;
    }
    /// The last of that name that can be seen, else one that can't, or null.
    template <class Widget = QWidget> Widget *find(const char *name) const
    {
        const auto visible = all<Widget>(name);
        return visible.isEmpty() ? m_view->findChild<Widget *>(QString::fromLatin1(name)) : visible.last();
    }
    template <class Widget = QWidget> Widget &at(const char *name) const
    {
        auto *widget = find<Widget>(name);
        if (!widget)
            throw std::runtime_error(std::string("there is no ") + name);
        return *widget;
    }
    bool shows(const char *name) const
    {
        const QWidget *widget = find(name);
        return widget && widget->isVisible();
    }
    bool isEnabled(const char *name) const { return shows(name) && find(name)->isEnabled(); }
    bool hasFocus(const char *name) const
    {
        return shows(name) && m_view->window()->focusWidget() == find(name);
    }
    /// Empty for what can't be seen.
    QString text(const char *name) const { return shows(name) ? textOf(find(name)) : QString(); }
    QStringList texts(const char *name) const
    {
        QStringList texts;
        for (const QWidget *widget : all(name))
            texts.append(textOf(widget));
        return texts;
    }
    static QString textOf(const QWidget *widget)
    {
        if (const auto *edit = qobject_cast<const QTextEdit *>(widget))
            return edit->toPlainText();
        if (const auto *line = qobject_cast<const QLineEdit *>(widget))
            return line->text();
        const auto *label = qobject_cast<const QLabel *>(widget);
        return label && !label->text().isEmpty() ? label->text() : widget->accessibleName();
    }
    QRect place(const char *name) const
    {
        const QWidget *widget = find(name);
        return widget ? QRect(widget->mapTo(m_view, QPoint(0, 0)), widget->size()) : QRect();
    }

    void press(const char *name) const { click(at<QAbstractButton>(name)); }
    /// One of several of that name, in reading order.
    void press(const char *name, qsizetype which) const { click(*all<QAbstractButton>(name).at(which)); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(focused(), key, modifiers);
        settle();
    }
    /// Key by key, where the focus is.
    void type(const char *text) const
    {
        QTest::keyClicks(focused(), QString::fromUtf8(text));
        settle();
    }
    /// In place of what a field held.
    void type(const char *name, const QString &text) const
    {
        auto &field = at<QLineEdit>(name);
        field.setFocus();
        field.selectAll();
        QTest::keyClick(&field, Qt::Key_Delete);
        commit(text.toUtf8().constData());
    }
    /// What an input method shows before the user has chosen.
    void compose(const char *text) const
    {
        QInputMethodEvent event(QString::fromUtf8(text), {});
        QCoreApplication::sendEvent(focused(), &event);
        settle();
    }
    void commit(const char *text) const
    {
        QInputMethodEvent event;
        event.setCommitString(QString::fromUtf8(text));
        QCoreApplication::sendEvent(focused(), &event);
        settle();
    }
    QWidget *focused() const
    {
        QWidget *widget = m_view->window()->focusWidget();
        return widget ? widget : m_view;
    }

private:
    static void click(QAbstractButton &button)
    {
        QTest::mouseClick(&button, Qt::LeftButton);
        settle();
    }

    QWidget *m_view = nullptr;
};

} // namespace nimbrelle
