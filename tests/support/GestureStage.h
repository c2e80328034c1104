#pragma once

#include "screen/RegionSelector.h"
#include "screen/ScreenOCR.h"
#include "screen/SelectionReader.h"
#include "screen/TriggerController.h"
#include "support/FakeDesktop.h"
#include "support/FakeInput.h"
#include "support/FakeOverlay.h"
#include "support/FakeRecognition.h"
#include "support/FakeSelection.h"
#include "support/Notebook.h"
#include "support/Printers.h"
#include "support/RecordingCard.h"

#include <gtest/gtest.h>

namespace nimbrelle {

/// A desktop to read from, with a clock moved by hand: the user's input goes in, calls to the card come out.
struct GestureStage {
    GestureStage()
    {
        front.front = Application{.bundleID = QStringLiteral("reader"), .window = 1};
        window.pointed = {.kind = PointedWindow::Kind::content,
            .application = *front.front,
            .area = {0, 0, 1280, 800},
            .hasTextCursor = true};
        trigger.start();
        pointer.at = middle;
    }

    static constexpr QPointF middle{640, 400};

    Notebook notebook;
    ManualClock &clock = notebook.clock;
    FakePointer pointer;
    FakeInputMonitor input{pointer};
    FakeFrontApplication front;
    FakeWindowAtPointer window;
    FakeSessionLock lock;
    FakeScreens screens;
    FakeScreenCapture capture;
    FakeTextRecognizer recognizer{clock};
    FakeAccessibilityReader accessibility{clock};
    FakePrimarySelection primary;
    FakeClipboard clipboard;
    FakeKeySender keys;
    FakeOverlay overlay;
    RecordingCard card;

    int likely = 0; ///< how often a look-up was said to be likely
    SelectionReader selection{
        clock, notebook.config, accessibility, primary, clipboard, keys, pointer, front, window};
    ScreenOCR ocr{screens, window, capture, recognizer};
    RegionSelector region{screens, pointer, front, overlay};
    TriggerController trigger{{.clock = clock,
        .config = notebook.config,
        .input = input,
        .pointer = pointer,
        .keys = keys,
        .front = front,
        .window = window,
        .lock = lock,
        .screens = screens,
        .accessibility = accessibility,
        .selection = selection,
        .ocr = ocr,
        .region = region,
        .card = card,
        .lookupIsLikely = [this] { ++likely; }}};

    void advance(std::chrono::milliseconds time) { clock.advance(time); }
    template <class Edit> void configure(Edit edit) { notebook.configure(edit); }

    /// The program in front reports this selection through accessibility.
    void mark(const QString &text, const std::optional<QString> &context = std::nullopt)
    {
        accessibility.chain = {{}};
        accessibility.selection = text;
        accessibility.piece.reset();
        if (context)
            accessibility.piece = TextPiece{.text = *context, .location = 0, .length = text.size()};
    }
    /// The screen shows this word under the pointer, wherever that is, in a box of 152 by 20 points.
    void showWord(const QString &word)
    {
        recognizer.lines = {FakeTextRecognizer::line(word, {0.4, 0.45, 0.2, 0.1})};
    }

    void rest(QPointF at, std::chrono::milliseconds time)
    {
        input.move(at);
        advance(time);
    }
    /// Long enough for a look-up of what is in the middle of the screen.
    void dwell()
    {
        input.move(middle - QPointF(300, 0));
        rest(middle, std::chrono::seconds{1});
    }
    void tap(ModifierFlags key, std::chrono::milliseconds held)
    {
        input.hold(key);
        advance(held);
        input.hold(0);
    }
};

} // namespace nimbrelle
