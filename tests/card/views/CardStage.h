#pragma once

#include "card/CardController.h"
#include "card/views/CardPanelWindow.h"
#include "card/views/CardView.h"
#include "platform/Speaker.h"
#include "support/FakeAIClient.h"
#include "support/FakeDesktop.h"
#include "support/Notebook.h"
#include "widgets/Theme.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>

#include <stdexcept>

namespace nimbrelle {

struct FakeSpeaker final : Speaker {
    void speak(const QString &text) override { said.append(text); }
    QStringList said;
};

/// The real card with its controller on a desktop that is not there; the user's part is played by the names
/// of what there is to see and to press.
struct CardStage {
    explicit CardStage(double scale = 1) : theme(scale)
    {
        theme.applyToApplication();
        panel.setView(view);
    }

    void lookup(const Explanation &answer)
    {
        controller.lookup(answer.headword, answer.sentence, {640, 600});
        ai.reply(answer);
        settle();
    }
    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QWidget *find(const char *name) const { return view.findChild<QWidget *>(QString::fromLatin1(name)); }
    bool shows(const char *name) const
    {
        const QWidget *widget = find(name);
        return widget && widget->isVisible();
    }
    /// Empty for what is not there.
    QString text(const char *name) const
    {
        const QWidget *widget = find(name);
        if (const auto *edit = qobject_cast<const QTextEdit *>(widget))
            return edit->toPlainText();
        if (const auto *label = qobject_cast<const QLabel *>(widget))
            return label->text();
        return widget ? widget->accessibleName() : QString();
    }
    void press(const char *name)
    {
        auto *button = qobject_cast<QPushButton *>(find(name));
        if (!button)
            throw std::runtime_error(std::string("no button ") + name);
        button->click();
        settle();
    }

    Notebook notebook;
    FakeAI ai;
    FakeScreens screens;
    FakeSpeaker speaker;
    FakeWindowSystem windowSystem{true};
    Theme theme;
    PageSource source = Notebook::page("https://www.example.org/a");
    CardPanelWindow panel{theme, windowSystem};
    CardController controller{notebook.clock, notebook.config, notebook.store, ai.factory(), screens, panel,
        [this] { return source; }};
    CardView view{{theme, controller, notebook.store, speaker}};
};

} // namespace nimbrelle
