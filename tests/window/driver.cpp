// Does with the finished window what a person does, and compares the files that it saves with those of the command
// line.
#include "driver.h"

#include <commctrl.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace {

using catalogue::Kind;

// Values away from the defaults, by what a parameter can hold; the same text for the window and the command line.
std::string TextFor(const catalogue::Parameter& parameter) {
    switch (parameter.kind) {
    case Kind::kInteger:
        return parameter.range.most > 1e6 ? "37" : std::to_string(static_cast<LONG>(parameter.range.most * 0.7));
    case Kind::kReal:
        return "-0.4";
    case Kind::kAngle:
        return "12.5";
    case Kind::kChoice:
        return parameter.Choices().back().name;
    case Kind::kColour:
    case Kind::kOptionalColour:
        return "20,120,220";
    case Kind::kPoints: {
        constexpr const char* kPoints[] = {"30,20", "160,31", "150,130", "22,118"};
        if (parameter.range.most > 1) {
            return "30,20 160,31 150,130 22,118";
        }
        return kPoints[static_cast<unsigned>(parameter.name[1]) % 2 + (parameter.name[0] == 'b' ? 1 : 0)];
    }
    case Kind::kRectangle:
        return "10,20,180,120";
    case Kind::kText:
        return std::string(parameter.name) == "text" ? "Copy 7" : "Tahoma";
    case Kind::kKernel:
        return "gauss";
    case Kind::kWidth:
        return "170";
    case Kind::kHeight:
        return "90";
    default:
        return "";
    }
}

std::wstring Wide(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

} // namespace

std::vector<std::string> WindowDriver::FillIn(const catalogue::Effect& effect) const {
    std::vector<std::string> words;
    int index = -1;
    for (const catalogue::Parameter& parameter : effect.Parameters()) {
        ++index;
        const std::string option = std::string("--") + parameter.name;
        const std::string text = TextFor(parameter);
        if (parameter.kind == Kind::kFlag || parameter.kind == Kind::kChannel) {
            if (index % 2 == 1) { // and the others stay as they are
                SendMessageW(window_->Part(index, IDC_PART_FLAG), BM_CLICK, 0, 0);
                words.push_back(option);
            }
        } else if (catalogue::IsPicture(parameter)) {
            const std::string file = parameter.name == std::string("marked") ? "marked.bmp" : "second.bmp";
            EXPECT_TRUE(window_->Choose(window_->Part(index, IDC_PART_CHOICE), Wide(file))) << effect.name;
            words.insert(words.end(), {option, Name(file)});
        } else if (!text.empty()) {
            const bool isChosen = parameter.kind == Kind::kChoice || parameter.kind == Kind::kKernel;
            if (isChosen) {
                EXPECT_TRUE(window_->Choose(window_->Part(index, IDC_PART_CHOICE), Wide(text))) << effect.name;
            } else {
                window_->Type(window_->Part(index, IDC_PART_EDIT), Wide(text));
            }
            words.insert(words.end(), {option, text});
        }
    }
    return words;
}

namespace {

TEST_F(WindowDriver, GivesTheBytesOfTheCommandLineForEveryEffect) {
    ASSERT_TRUE(window_->Hand(QV8WINDOW_OPEN, folder_.Path("marked.bmp")));
    ASSERT_TRUE(window_->Hand(QV8WINDOW_OPEN, folder_.Path("second.bmp")));
    ASSERT_TRUE(window_->Hand(QV8WINDOW_OPEN, folder_.Path("picture.bmp")));
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        if (effect.family == catalogue::Family::kClipboard) {
            continue;
        }
        SCOPED_TRACE(effect.name);
        const std::wstring before = window_->Title();
        ChooseEffect(effect.name);
        ASSERT_TRUE(window_->Command(ID_EFFECT_RESET));
        std::vector<std::string> words = FillIn(effect);
        words.insert(words.begin(), effect.name);
        if (effect.TakesPicture()) {
            words.push_back(Name("picture.bmp"));
        }
        ASSERT_NO_FATAL_FAILURE(Apply());
        const bool isNew = !effect.TakesPicture();
        ASSERT_NO_FATAL_FAILURE(ExpectSaved(words, effect.name));
        ASSERT_TRUE(window_->Command(isNew ? ID_FILE_CLOSE : ID_EDIT_UNDO));
    }
}

constexpr int kThroughAFile = -1; // no command: the mask is saved and loaded

// What is drawn on the canvas limits the effect, and what is dragged there gives its parameters.
TEST_F(WindowDriver, DrawsWhatTheCommandLineIsTold) {
    const struct {
        std::vector<int> commands; // before the mouse
        const char* effect;
        const char* gesture;
        std::vector<int> commandsAfter;
        std::vector<std::string> words; // behind the name of the effect
    } kCases[] = {
        {{ID_SELECT_ELLIPSE}, "rgb-rev", "p20,30 m100,90 m120,110 r120,110", {}, {"--ellipse", "20,30,120,110"}},
        {{ID_SELECT_ELLIPSE},
         "rgb-rev",
         "p20,30 m120,110 r120,110",
         {ID_SELECT_INVERT},
         {"--outside", "--ellipse", "20,30,120,110"}},
        {{ID_SELECT_RECTANGLE},
         "rgb-rev",
         "p20,30 m120,110 r120,110",
         {},
         {"--polygon", "20,30 119,30 119,109 20,109"}},
        {{ID_SELECT_POLYGON},
         "shade",
         "p20,30 r20,30 p150,40 r150,40 p90,120 r90,120 d90,120 r90,120",
         {},
         {"--polygon", "20,30 150,40 90,120"}},
        {{ID_SELECT_ELLIPSE},
         "emboss",
         "p20,30 m120,110 r120,110",
         {ID_SELECT_MAKE_MASK},
         {"--ellipse", "20,30,120,110"}},
        {{ID_SELECT_ELLIPSE}, "select-image", "p20,30 m120,110 r120,110", {}, {"--ellipse", "20,30,120,110"}},
        {{ID_SELECT_ALL, ID_SELECT_NONE}, "set-gray", "", {}, {}},
        {{ID_SELECT_ELLIPSE}, "rgb-rev", "p20,30 m120,110 r120,110", {kThroughAFile}, {"--ellipse", "20,30,120,110"}},
        {{}, "affine", "p25,18 m10,5 r10,5", {}, {"--corners", "10,5 175,18 175,131 25,131"}},
        {{}, "set-secret-image", "p20,30 m120,110 r120,110", {}, {"--text", "Copy 7", "--rect", "20,30,119,109"}},
        {{}, "resize", "p200,75 m120,75 r120,75", {}, {"--width", "120", "--height", "150"}},
        {{}, "rotation", "p200,75 m100,0 r100,0", {}, {"--angle", "90"}},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.effect + std::string(" ") + row.gesture);
        ASSERT_TRUE(window_->Command(ID_SELECT_NONE));
        ASSERT_TRUE(window_->Command(ID_SELECT_HAND));
        ChooseEffect(row.effect);
        if (row.effect == std::string("set-secret-image")) {
            window_->Type(window_->Part(1, IDC_PART_EDIT), L"Copy 7");
        }
        ASSERT_TRUE(window_->Command(ID_VIEW_ACTUAL));
        for (const int command : row.commands) {
            ASSERT_TRUE(window_->Command(command));
        }
        ASSERT_NO_FATAL_FAILURE(Gesture(row.gesture));
        for (const int command : row.commandsAfter) {
            if (command == kThroughAFile) {
                ASSERT_TRUE(window_->Hand(QV8WINDOW_SAVE_MASK, folder_.Path("mask.png")));
                ASSERT_TRUE(window_->Command(ID_SELECT_NONE));
                ASSERT_TRUE(window_->Hand(QV8WINDOW_LOAD_MASK, folder_.Path("mask.png")));
            } else {
                ASSERT_TRUE(window_->Command(command));
            }
        }
        ASSERT_NO_FATAL_FAILURE(Apply());
        std::vector<std::string> words = row.words;
        words.insert(words.begin(), row.effect);
        words.push_back(Name("picture.bmp"));
        ExpectSaved(words, row.gesture);
        ASSERT_TRUE(window_->Command(ID_EDIT_UNDO));
    }
}

// Two points in each of two pictures side by side; a second picture that is dragged, turned and faded.
TEST_F(WindowDriver, PlacesASecondPicture) {
    ASSERT_TRUE(window_->Hand(QV8WINDOW_OPEN, folder_.Path("second.bmp")));
    ASSERT_TRUE(window_->Command(ID_VIEW_PREVIOUS));
    const struct {
        const char* effect;
        const char* second;
        int width; // of what is to be seen
        const char* gesture;
        std::vector<std::string> words;
    } kCases[] = {
        {"layer", "--layer", kWidth, "p5,5 m15,25 r15,25 k109 k37", {"--x", "9", "--y", "20", "--opacity", "239"}},
        {"paste-image",
         "--pasted",
         kWidth,
         "p100,75 m120,90 r120,90 p121,62 m91,90 r91,90 k109 k109",
         {"--x", "120", "--y", "90", "--angle", "89.05", "--opacity", "223"}},
        {"panorama", // the second is as high as the first: 10/3 as large, behind a gap of 4
         "--added",
         404,
         "p150,40 r150,40 p154,100 r154,100 p222,42 r222,42 p226,102 r226,102",
         {"--a1", "150,40", "--a2", "154,100", "--b1", "5,12", "--b2", "6,30"}},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.effect);
        ChooseEffect(row.effect);
        ASSERT_TRUE(window_->Choose(window_->Part(0, IDC_PART_CHOICE), L"second.bmp"));
        ASSERT_TRUE(window_->Command(ID_VIEW_ACTUAL));
        ASSERT_NO_FATAL_FAILURE(Gesture(row.gesture, row.width));
        ASSERT_NO_FATAL_FAILURE(Apply());
        std::vector<std::string> words{row.effect, row.second, Name("second.bmp")};
        words.insert(words.end(), row.words.begin(), row.words.end());
        words.push_back(Name("picture.bmp"));
        ExpectSaved(words, row.gesture);
        ASSERT_TRUE(window_->Command(ID_EDIT_UNDO));
    }
}

TEST_F(WindowDriver, SharesTheClipboardWithTheCommandLine) {
    ASSERT_TRUE(window_->Command(ID_EDIT_COPY));
    Qv8({"paste", Name("pasted.bmp")});
    EXPECT_TRUE(folder_.Load("pasted.bmp") == folder_.Load("picture.bmp"));
    Qv8({"copy", Name("marked.bmp")});
    ASSERT_TRUE(window_->Command(ID_EDIT_PASTE_NEW));
    ExpectSaved({"copy-image", Name("marked.bmp")}, "pasted as a new picture");
    ChooseEffect("is-clip-brd-data");
    const std::wstring there = window_->Status(STATUS_MESSAGE);
    ChooseEffect("clear-clip-brd");
    EXPECT_EQ(IsClipboardFormatAvailable(CF_DIB), FALSE);
    ChooseEffect("is-clip-brd-data");
    EXPECT_NE(window_->Status(STATUS_MESSAGE), there);
    ChooseEffect("set-to-clip-brd");
    ASSERT_TRUE(window_->Command(ID_FILE_CLOSE));
    ChooseEffect("get-from-clip-brd");
    ExpectSaved({"copy-image", Name("marked.bmp")}, "taken from the clipboard");
}

TEST_F(WindowDriver, AsksBeforeAChangeIsLost) {
    const std::filesystem::path strange = folder_.Path("picture.bmp").replace_filename(L"Gr\u00fc\u00dfe \u7d75.bmp");
    std::filesystem::copy_file(folder_.Path("picture.bmp"), strange);
    ASSERT_TRUE(window_->Hand(QV8WINDOW_OPEN, strange));
    EXPECT_EQ(window_->Title().find(strange.filename().wstring()), 0U) << "names of all languages";
    ChooseEffect("rgb-rev");
    ASSERT_NO_FATAL_FAILURE(Apply());
    EXPECT_NE(window_->Title().find(L'*'), std::wstring::npos);
    // The bar beside the effects, which stands where it stood when the window comes again.
    const HWND bar = window_->Control(IDC_SPLITTER);
    const auto drag = [bar](int by) {
        SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 50));
        SendMessageW(bar, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(3 + by, 50));
        SendMessageW(bar, WM_LBUTTONUP, 0, MAKELPARAM(3, 50));
    };
    const auto width = [this] {
        RECT client{};
        GetClientRect(window_->Control(IDC_CANVAS), &client);
        return client.right;
    };
    drag(3000); // as far as it goes
    const LONG widest = width();
    drag(-40);
    EXPECT_EQ(width(), widest - 40);
    SendMessageW(bar, WM_KEYDOWN, VK_LEFT, 0);
    const LONG left = width();
    EXPECT_LT(left, widest - 40);
    for (const int answer : {IDCANCEL, IDNO}) {
        PostMessageW(window_->Window(), WM_CLOSE, 0, 0);
        ASSERT_TRUE(Application::WaitFor([this] { return window_->Dialog() != nullptr; }));
        PostMessageW(window_->Dialog(), WM_COMMAND, static_cast<WPARAM>(answer), 0);
        Application::WaitFor([this] { return window_->Dialog() == nullptr; });
        EXPECT_EQ(Application::WaitFor([this] { return !window_->IsRunning(); }, answer == IDNO ? 5000 : 200),
                  answer == IDNO);
    }
    Start({});
    EXPECT_EQ(width(), left);
}

TEST_F(WindowDriver, KeepsNothingAndAnswersQuickly) {
    Qv8({"resize", "--width", IsMeasured() ? "4000" : "1000", "--height", IsMeasured() ? "3000" : "750", QV8_SAMPLE,
         Name("large.bmp")});
    ASSERT_TRUE(window_->Hand(QV8WINDOW_OPEN, folder_.Path("large.bmp")));
    ChooseEffect("rgb-gamma");
    const HWND slider = window_->Part(0, IDC_PART_SLIDER);
    std::vector<double> times;
    for (int i = 1; i <= 15; ++i) {
        const LRESULT before = window_->State(QV8WINDOW_PREVIEWS);
        const auto start = std::chrono::steady_clock::now();
        SendMessageW(slider, TBM_SETPOS, TRUE, 10 * i);
        SendMessageW(GetParent(slider), WM_HSCROLL, TB_THUMBTRACK, reinterpret_cast<LPARAM>(slider));
        ASSERT_TRUE(Application::WaitFor([&] { return window_->State(QV8WINDOW_PREVIEWS) > before; }));
        times.push_back(Milliseconds(std::chrono::steady_clock::now() - start).count());
        ASSERT_TRUE(window_->WaitUntilIdle());
    }
    std::sort(times.begin(), times.end());
    std::cout << "from a slider to its preview: median " << times[times.size() / 2] << " ms, longest " << times.back()
              << " ms\n";
    EXPECT_TRUE(!IsMeasured() || times[times.size() / 2] < 50);

    const auto tell = [this](const char* when) {
        const Holdings now = window_->Holds();
        std::cout << when << ": " << now.megabytes << " MB, " << now.gdiObjects << " GDI objects, " << now.windows
                  << " windows, " << now.userHandles << " user handles; longest time without an answer so far "
                  << pinger_->LongestMilliseconds() << " ms\n";
        return now;
    };
    Holdings before = tell("opened");
    for (int round = 0; round != 2; ++round) { // what is made once stays from the first round on
        before = round == 1 ? window_->Holds() : before;
        for (int i = 0; i != 20; ++i) {
            ASSERT_NO_FATAL_FAILURE(Apply());
        }
        tell("after twenty effects");
        ASSERT_TRUE(window_->Command(ID_EDIT_UNDO_ALL));
    }
    const Holdings after = tell("all undone");
    EXPECT_LE(after.gdiObjects, before.gdiObjects + 5) << "what is used for a moment, and not one for each effect";
    EXPECT_LE(after.windows, before.windows);
    EXPECT_LE(after.userHandles, before.userHandles + 20) << "other programs make some, too";
    if (!IsMeasured()) { // large pictures are undone no further than memory for it reaches
        ExpectSaved({"copy-image", Name("large.bmp")}, "all undone");
    }
}

// Whatever else looks at all pixels of a large picture.
TEST_F(WindowDriver, AnswersQuicklyWhateverItDoes) {
    Qv8({"resize", "--width", IsMeasured() ? "4000" : "400", "--height", IsMeasured() ? "3000" : "300", QV8_SAMPLE,
         Name("large.bmp")});
    ASSERT_TRUE(window_->Hand(QV8WINDOW_OPEN, folder_.Path("large.bmp")));
    ChooseEffect("emboss");
    for (const int command : {ID_SELECT_COLOUR, ID_SELECT_INVERT, ID_SELECT_MAKE_MASK, ID_EFFECT_APPLY, ID_EDIT_UNDO,
                              ID_EDIT_COPY, ID_EDIT_PASTE_NEW, ID_VIEW_PREVIOUS, ID_VIEW_ACTUAL, ID_VIEW_FIT}) {
        ASSERT_TRUE(window_->Command(command));
        if (command == ID_SELECT_COLOUR) {
            ASSERT_NO_FATAL_FAILURE(Gesture("p40,30 r40,30"));
        }
        std::cout << command << ": " << pinger_->LongestMilliseconds() << " ms\n";
    }
    for (const char* const effect : {"layer", "rotation", "affine", "median"}) {
        ChooseEffect(effect);
        ASSERT_TRUE(window_->WaitUntilIdle());
        std::cout << effect << ": " << pinger_->LongestMilliseconds() << " ms\n";
    }
    ExpectSaved({"copy-image", Name("large.bmp")}, "neither changed nor mixed up");
}

} // namespace
