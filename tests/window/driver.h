// The window with pictures in a folder of its own.
#ifndef QV8_TEST_WINDOW_DRIVER_H
#define QV8_TEST_WINDOW_DRIVER_H

#include "application.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "catalogue/effect.h"
#include "files.h"
#include "run_qv8.h"

class WindowDriver : public testing::Test {
protected:
    void SetUp() override {
        Qv8({"resize", "--width", std::to_string(kWidth), "--height", std::to_string(kHeight), "--smooth", QV8_SAMPLE,
             Name("picture.bmp")});
        Qv8({"resize", "--width", "60", "--height", "45", "--smooth", QV8_SAMPLE, Name("second.bmp")});
        Qv8({"rgb-level", "--red", "9", "--ellipse", "20,20,90,90", Name("picture.bmp"), Name("marked.bmp")});
        Start(L"\"" + folder_.Path("picture.bmp").wstring() + L"\"");
    }

    void Start(const std::wstring& arguments) {
        window_ = std::make_unique<Application>(arguments);
        ASSERT_NE(window_->Window(), nullptr);
        pinger_ = std::make_unique<Pinger>(window_->Window());
        ASSERT_TRUE(window_->WaitUntilIdle());
        std::cout << "until the first picture is shown: " << pinger_->LongestMilliseconds()
                  << " ms without an answer\n";
        pinger_ = std::make_unique<Pinger>(window_->Window()); // from now on it works
    }

    void TearDown() override {
        if (pinger_ != nullptr) {
            std::cout << "longest time without an answer: " << pinger_->LongestMilliseconds() << " ms\n";
            EXPECT_TRUE(!IsMeasured() || pinger_->LongestMilliseconds() < 100);
        }
        pinger_.reset();
        window_.reset();
    }

    // With QV8_MEASURE set in the environment on a machine that does nothing else: pictures are large and times count.
    static bool IsMeasured() {
        return std::getenv("QV8_MEASURE") != nullptr;
    }

    std::string Name(const std::string& file) const {
        return folder_.Name(file);
    }

    static void Qv8(const std::vector<std::string>& words) {
        const Outcome outcome = RunQv8(words);
        EXPECT_EQ(outcome.code, 0) << outcome.err;
    }

    void ChooseEffect(const char* name) const {
        const catalogue::Effect* const effect = catalogue::FindEffect(name);
        ASSERT_TRUE(window_->Command(ID_EFFECT_FIRST + static_cast<int>(effect - catalogue::AllEffects().data())));
    }

    // Gives every parameter of the chosen effect a value; returns the words of the command line that do the same.
    std::vector<std::string> FillIn(const catalogue::Effect& effect) const;

    void Apply() const {
        ASSERT_TRUE(window_->Command(ID_EFFECT_APPLY));
        ASSERT_EQ(window_->Dialog(), nullptr) << Complaint();
    }

    std::string Complaint() const {
        const std::wstring text = Application::TextOf(GetDlgItem(window_->Dialog(), 0xFFFF));
        return {text.begin(), text.end()};
    }

    // The picture in front, saved, is byte for byte what the command line made of these words.
    void ExpectSaved(std::vector<std::string> words, const std::string& what) const {
        words.insert(words.end(), {"--force", Name("expected.bmp")});
        Qv8(words);
        ASSERT_TRUE(window_->Hand(QV8WINDOW_SAVE, folder_.Path("saved.bmp"))) << what;
        EXPECT_TRUE(folder_.Load("saved.bmp") == folder_.Load("expected.bmp")) << what << ": other bytes";
    }

    // "p10,20 m30,40 r30,40 k109" on the canvas, from an origin there and in units of so many pixels; k is a key.
    void Gesture(const std::string& gesture, POINT origin, double across, double down) const {
        std::istringstream words(gesture);
        for (std::string word; words >> word;) {
            if (word[0] == 'k') {
                SendMessageW(window_->Control(IDC_CANVAS), WM_KEYDOWN, std::stoul(word.substr(1)), 0);
                continue;
            }
            double x = 0;
            double y = 0;
            char comma = 0;
            std::istringstream(word.substr(1)) >> x >> comma >> y;
            const UINT message = word[0] == 'p'   ? WM_LBUTTONDOWN
                                 : word[0] == 'r' ? WM_LBUTTONUP
                                 : word[0] == 'd' ? WM_LBUTTONDBLCLK
                                                  : WM_MOUSEMOVE;
            SendMessageW(window_->Control(IDC_CANVAS), message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON,
                         MAKELPARAM(origin.x + static_cast<int>(x * across), origin.y + static_cast<int>(y * down)));
        }
        ASSERT_TRUE(window_->WaitUntilIdle());
    }

    // The same in pixels of the picture, which is shown as large as it is, in the middle.
    void Gesture(const std::string& gesture, int width = kWidth) const {
        RECT client{};
        GetClientRect(window_->Control(IDC_CANVAS), &client);
        Gesture(gesture, {(client.right - width) / 2, (client.bottom - kHeight) / 2}, 1, 1);
    }

    static constexpr int kWidth = 200; // of the picture
    static constexpr int kHeight = 150;

    Folder folder_;
    std::unique_ptr<Application> window_;
    std::unique_ptr<Pinger> pinger_;
};

#endif
