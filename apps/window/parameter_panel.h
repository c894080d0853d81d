// Controls for the parameters of one effect, made from its description.
#ifndef QV8_WINDOW_PARAMETER_PANEL_H
#define QV8_WINDOW_PARAMETER_PANEL_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "model/parameter_scale.h"
#include "model/parameter_values.h"
#include "system/screen.h"

// What was chosen for an effect; it is kept while another effect is looked at.
struct EffectSetup {
    explicit EffectSetup(const catalogue::Effect& effect) : values(effect) {}

    ParameterValues values;
    std::map<std::string, int> pictures; // other open pictures by their numbers
};

struct OpenPicture {
    int id;
    std::wstring name;
};

// Whether the parameter is chosen among the pictures that are open, and files.
inline bool IsOtherPicture(const catalogue::Parameter& parameter) {
    return catalogue::IsPicture(parameter) || parameter.kind == catalogue::Kind::kPattern;
}

class PanelOwner {
public:
    virtual ~PanelOwner() = default;
    virtual void ValuesChanged() = 0; // of the setup that is shown, pictures too
    virtual std::vector<OpenPicture> OtherPictures() const = 0;
    virtual void OpenAnother(const std::string& parameter) = 0; // and choose it for the parameter
};

class ParameterPanel {
public:
    ParameterPanel(HWND parent, PanelOwner& owner);
    ParameterPanel(const ParameterPanel&) = delete;
    ParameterPanel& operator=(const ParameterPanel&) = delete;

    HWND Window() const {
        return window_;
    }

    // Makes the controls of an effect, or none, perhaps in pieces. The setup must stay where it is.
    void Show(EffectSetup* setup, Extent picture, HFONT font);
    // Brings the controls up to date with values that were changed elsewhere.
    void Refresh();
    bool IsBuilding() const {
        return isOld_ || made_ < rows_.size();
    }
    // What cannot be understood of what was typed, or nothing.
    std::string Mistake() const;

private:
    struct Row {
        const catalogue::Parameter* parameter;
        std::optional<SliderScale> scale;
        int id; // of its first control
        bool isMade = false;
        std::string mistake;
    };

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    HWND Add(const wchar_t* windowClass, const std::wstring& text, DWORD style, int id, DWORD extendedStyle = 0);
    void Build();
    void BuildPiece();
    void AddRow(Row& row);
    void AddTip(const Row& row);
    void FillChoices(const Row& row);
    void Layout();
    int LayoutRow(const Row& row, int top, int width, const Dots& dots);
    void ShowScrollBar();
    void Scroll(int to);
    void ScrollBy(WORD request);
    void Command(int id, int notification);
    void Slide(HWND slider);
    void Edited(Row& row);
    void Chosen(Row& row);
    void ChooseFromDialog(Row& row);
    void ChooseColour(Row& row);
    void RefreshRow(const Row& row, HWND except);
    void RefreshSizes(const Row& changed);
    void DrawColour(const DRAWITEMSTRUCT& item) const;
    Row* RowOf(int id);
    HWND Part(const Row& row, int part) const {
        return row.isMade ? GetDlgItem(window_, row.id + part) : nullptr;
    }

    PanelOwner& owner_;
    HWND window_ = nullptr;
    HWND tips_ = nullptr;
    EffectSetup* setup_ = nullptr;
    Extent picture_;
    HFONT font_ = nullptr;
    std::vector<Row> rows_;
    bool isOld_ = false;   // there still are controls of the effect before
    std::size_t made_ = 0; // rows that have their controls
    int height_ = 0;       // of these rows
    int scrolled_ = 0;
    bool isRefreshing_ = false;
};

#endif
