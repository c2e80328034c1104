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
#include "support/RecordingCard.h"

namespace nimbrelle {

/// A desktop to play gestures on: the user's hand in, calls to the card out, with a clock moved by hand.
struct GestureStage {
    GestureStage()
    {
        front.front = Application{.bundleID = QStringLiteral("reader")};
        trigger.start();
        pointer.at = middle;
    }

    static constexpr QPointF middle{640, 400};

    Notebook notebook;
    ManualClock &clock = notebook.clock;
    FakePointer pointer;
    FakeInputMonitor input{pointer};
    FakeFrontApplication front;
    FakeScreens screens;
    FakeScreenCapture capture;
    FakeTextRecognizer recognizer{clock};
    FakeAccessibilityReader accessibility;
    FakePrimarySelection primary;
    FakeClipboard clipboard;
    FakeKeySender keys;
    FakeOverlay overlay;
    RecordingCard card;

    SelectionReader selection{clock, accessibility, primary, clipboard, keys, pointer, front};
    ScreenOCR ocr{screens, capture, recognizer};
    RegionSelector region{screens, pointer, front, overlay};
    TriggerController trigger{{.clock = clock,
        .config = notebook.config,
        .input = input,
        .pointer = pointer,
        .front = front,
        .screens = screens,
        .accessibility = accessibility,
        .selection = selection,
        .ocr = ocr,
        .region = region,
        .card = card}};

    void advance(std::chrono::milliseconds time) { clock.advance(time); }
    template <class Edit> void configure(Edit edit) { notebook.configure(edit); }

    /// The program in front tells screen readers of this selection.
    void mark(const char *text, const char *context = nullptr)
    {
        accessibility.chain = {{}};
        accessibility.selection = QString::fromUtf8(text);
        accessibility.piece = std::nullopt;
        if (context)
            accessibility.piece = TextPiece{QString::fromUtf8(context), 0, accessibility.selection->size()};
    }

    /// The screen shows this word under the pointer, wherever that is, in a box of 152 by 20 points. Beside
    void showWord(const char *word)
    {
        recognizer.lines = {FakeTextRecognizer::line(QString::fromUtf8(word), {0.4, 0.45, 0.2, 0.1})};
    }

    /// The pointer comes to rest there and stays for `time`.
    void rest(QPointF at, std::chrono::milliseconds time)
    {
        input.move(at);
        advance(time);
    }
    void tap(ModifierFlags key, std::chrono::milliseconds held = std::chrono::milliseconds{50})
    {
        input.hold(key);
        advance(held);
        input.hold(0);
    }
};

} // namespace nimbrelle
