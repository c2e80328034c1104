#pragma once

#include "support/FakeAIClient.h"
#include "support/Notebook.h"
#include "support/ViewStage.h"

#include <QScrollArea>
#include <QScrollBar>

namespace nimbrelle {

/// What the window of a conversation is tested with: a notebook, and an AI that answers piece by piece.
struct TalkStage {
    explicit TalkStage(double scale, Theme::Scheme scheme) : theme(scale)
    {
        theme.setScheme(scheme);
        theme.applyToApplication();
    }

    void piece(const QString &text)
    {
        ai.piece(text);
        ViewStage::settle();
    }
    void end()
    {
        ai.endStream();
        ViewStage::settle();
    }
    template <class Error> void fail(const Error &error)
    {
        ai.fail(error);
        ViewStage::settle();
    }
    static QScrollBar &scrollBar(const QWidget &view)
    {
        return *view.findChild<QScrollArea *>(QStringLiteral("messages"))->verticalScrollBar();
    }
    static QString manyLines(int count) { return QStringList(count, QStringLiteral("一行")).join(u'\n'); }

    Notebook notebook;
    FakeAI ai;
    Theme theme;
};

} // namespace nimbrelle
