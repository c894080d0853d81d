// The window of the application: open pictures, the list of effects, and what becomes of commands.
#ifndef QV8_WINDOW_MAIN_WINDOW_H
#define QV8_WINDOW_MAIN_WINDOW_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "canvas.h"
#include "document.h"
#include "effect_list.h"
#include "parameter_panel.h"
#include "splitter.h"
#include "system/settings.h"
#include "system/worker.h"

class MainWindow final : public CanvasOwner, public PanelOwner, public SplitterOwner {
public:
    MainWindow();
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;
    ~MainWindow() override = default;

    HWND Handle() const {
        return window_;
    }
    void Show(int how);
    void OpenFiles(const std::vector<std::wstring>& names);
    // Takes keys of the whole window, before the control that has the focus is given them.
    bool TakeKey(const MSG& message);

private:
    // Creation and messages
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Notified(const NMHDR& header);
    LRESULT State(WPARAM what); // for programs that drive the window
    void MakeControls();
    void UseFont();
    void Layout();
    int PanelWidth() const;
    void LayoutPanel(int left, int top, int width, int height);
    void LayoutStatus(int width);
    void Command(int id, int notification);
    bool FileCommand(int id);
    bool EditCommand(int id);
    bool SelectCommand(int id);
    bool ViewCommand(int id);
    void NextPane(int step);
    void Finish(); // the window goes, unless something keeps it

    // Menus, title, status line
    void MakeMenus();
    void UpdateMenu(HMENU menu);
    bool IsEnabled(UINT id) const;
    bool IsChecked(UINT id) const;
    void FillRecent(HMENU menu) const;
    void ShowState(); // of the picture in front, wherever it is shown
    void ShowStatus(int part, const std::wstring& text);
    void ShowMemory();
    void Complain(UINT id, const std::string& reason);
    void Say(const std::wstring& text, UINT icon);
    COLORREF ColourAt(const Position& at) const;

    // Files
    void LoadFile(const std::wstring& name, const std::string& forParameter);
    void LoadNext();
    void Opened(const std::wstring& name, LoadedPicture loaded, const std::string& forParameter);
    void AddDocument(std::unique_ptr<Document> document);
    void Save(Action then);
    void SaveAs(Action then);
    void SaveTo(const std::wstring& path, Action then);
    void Close(int id, const Action& then);
    bool AskThenClose(Action then);
    void CloseAll();
    void Remove(int id);
    void DropFiles(HDROP drop);
    bool Handed(const COPYDATASTRUCT& data);
    void Remember(const std::wstring& path);

    // Documents
    Document* Front() const;
    Document* WithId(int id) const;
    Document* Other(int id) const; // null for the one in front too
    void GoTo(std::size_t index);
    void GoBy(int step);
    void ShowFront(); // after another document or version has come in front
    void FillTabs();
    std::wstring NewName(const std::wstring& wanted) const;
    std::vector<History*> Histories() const;

    // Effects
    const catalogue::Effect* ChosenEffect() const;
    EffectSetup* Setup();
    void ChooseEffect(std::size_t index);
    void ResetEffect();
    void ChangeVersion(bool redo);
    void UndoAll();
    void KeepToLimit();
    void Apply();
    void Applied(int documentId, const std::string& effect, const PictureSource& before, ChainResult result);
    void AddResult(const PictureSource& before, const std::string& effect, ChainResult result);
    EffectRun Run();
    std::wstring Obstacle();
    void ShowHelp(const std::wstring& obstacle);
    static std::wstring MissingValue(const EffectRun& run);
    static std::wstring WrongDepth(const EffectRun& run);
    void UpdatePreview();
    void StopPreview();
    void MakeLevels();
    template <class Make, class Use>
    void StartTask(const std::wstring& doing, UINT failure, Make make, Use use);
    void BeginTask(const std::wstring& doing);
    void EndTask();
    void FailTask(UINT failure, const std::string& reason); // on the thread that works; 0: it was cancelled

    // Selection, tools, clipboard
    void UseAreaTool(std::optional<AreaForm> form);
    void MakeTool();
    void FollowTool();
    void TakeValues(const DrawnValues& values);
    void SelectLike(const DrawnValues& values);
    template <class Make>
    void SelectByTask(Make make);
    void SetSelection(Selection selection);
    void LoadMask(const std::wstring& path);
    void SaveMask(const std::wstring& path);
    void Copy();
    void Paste(bool into);
    bool ClipboardEffect(const catalogue::Effect& effect);
    void AddPasted(Picture picture, bool into);
    void ChooseOther();

    void ViewChanged() override;
    void PointerMoved(const Position* inPicture) override;
    void ToolChanged() override;
    void PreviewPainted() override;
    void ValuesChanged() override;
    std::vector<OpenPicture> OtherPictures() const override;
    void OpenAnother(const std::string& parameter) override;
    void SplitterMoved(int by) override;

    HWND window_ = nullptr;
    HWND tabs_ = nullptr;
    HWND status_ = nullptr;
    HWND help_ = nullptr;
    HWND preview_ = nullptr;
    HWND reset_ = nullptr;
    HWND apply_ = nullptr;
    GdiObject<HFONT> font_;
    Settings settings_;
    std::vector<std::unique_ptr<Document>> documents_;
    std::size_t front_ = 0;
    int lastId_ = 0;
    std::vector<EffectSetup> setups_; // of all effects
    std::optional<std::size_t> chosen_;
    bool isPreviewWanted_ = false; // since a value was changed
    DWORD changedAt_ = 0;
    LRESULT previewsPainted_ = 0;
    std::optional<AreaForm> areaForm_;
    std::unique_ptr<Tool> tool_;
    bool hasEffectTool_ = false;
    struct Waiting {
        std::wstring name;
        std::string parameter; // that the picture is chosen for
    };
    std::vector<Waiting> toOpen_;
    bool closesAfterTask_ = false;
    std::unique_ptr<Canvas> canvas_;
    std::unique_ptr<Splitter> splitter_;
    std::unique_ptr<EffectList> list_;
    std::unique_ptr<ParameterPanel> panel_;
    // The threads end first, while all that they may post to is there.
    WayBack wayBack_;
    TaskWorker task_;
    NewestWorker levelMaker_;
    NewestWorker previewMaker_;
};

#endif
