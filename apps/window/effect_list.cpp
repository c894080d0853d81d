#include "effect_list.h"

#include <map>
#include <string>

#include <commctrl.h>

#include "catalogue/effect.h"
#include "commands.h"
#include "model/parameter_scale.h"
#include "system/text.h"
#include "texts.h"

namespace {

constexpr LPARAM kFamily = -1;
constexpr UINT kSetCueBanner = 0x1501; // EM_SETCUEBANNER, which the system has from its version 6 of the controls on

HWND Make(HWND parent, const wchar_t* windowClass, DWORD style, int id) {
    return CreateWindowExW(WS_EX_CLIENTEDGE, windowClass, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, 0, 0, 0, 0,
                           parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr),
                           nullptr);
}

HTREEITEM Insert(HWND tree, HTREEITEM parent, std::wstring text, LPARAM data) {
    TVINSERTSTRUCTW item = {};
    item.hParent = parent;
    item.hInsertAfter = TVI_LAST;
    item.item.mask = TVIF_TEXT | TVIF_PARAM;
    item.item.pszText = text.data();
    item.item.lParam = data;
    return reinterpret_cast<HTREEITEM>(SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
}

LPARAM DataOf(HWND tree, HTREEITEM handle) {
    TVITEMW item = {};
    item.mask = TVIF_PARAM;
    item.hItem = handle;
    return TreeView_GetItem(tree, &item) ? item.lParam : kFamily;
}

// The item of an effect, or null.
HTREEITEM Find(HWND tree, LPARAM data) {
    for (HTREEITEM family = TreeView_GetRoot(tree); family != nullptr; family = TreeView_GetNextSibling(tree, family)) {
        for (HTREEITEM item = TreeView_GetChild(tree, family); item != nullptr;
             item = TreeView_GetNextSibling(tree, item)) {
            if (DataOf(tree, item) == data) {
                return item;
            }
        }
    }
    return nullptr;
}

} // namespace

EffectList::EffectList(HWND parent)
    : search_(Make(parent, WC_EDITW, ES_AUTOHSCROLL, IDC_SEARCH)),
      tree_(
          Make(parent, WC_TREEVIEWW, TVS_HASBUTTONS | TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_INFOTIP, IDC_EFFECTS)) {
    SendMessageW(search_, kSetCueBanner, TRUE, reinterpret_cast<LPARAM>(Text(IDS_SEARCH).c_str()));
    Fill({});
}

void EffectList::UseFont(HFONT font) {
    for (const HWND control : {search_, tree_}) {
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    }
}

void EffectList::Place(int left, int top, int width, int height, int searchHeight, int gap) {
    MoveWindow(search_, left, top, width, searchHeight, FALSE);
    MoveWindow(tree_, left, top + searchHeight + gap, width, height - searchHeight - gap, FALSE);
}

void EffectList::Fill(const std::string& search) {
    isFilling_ = true;
    SendMessageW(tree_, WM_SETREDRAW, FALSE, 0);
    TreeView_DeleteAllItems(tree_);
    std::map<catalogue::Family, HTREEITEM> families;
    LPARAM index = 0;
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        if (IsFound(effect, search)) {
            auto family = families.find(effect.family);
            if (family == families.end()) {
                const HTREEITEM heading = Insert(tree_, TVI_ROOT, Wide(catalogue::FamilyName(effect.family)), kFamily);
                family = families.emplace(effect.family, heading).first;
            }
            Insert(tree_, family->second, Wide(TitleOf(effect.name)), index);
        }
        ++index;
    }
    for (const auto& [family, item] : families) {
        TreeView_Expand(tree_, item, TVE_EXPAND);
    }
    TreeView_EnsureVisible(tree_, TreeView_GetRoot(tree_));
    SendMessageW(tree_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(tree_, nullptr, TRUE);
    isFilling_ = false;
}

void EffectList::Filter() {
    Fill(Utf8(TextOfWindow(search_)));
}

void EffectList::Select(std::size_t index) {
    const auto data = static_cast<LPARAM>(index);
    if (Find(tree_, data) == nullptr) {
        SetWindowTextW(search_, L""); // which fills the list again
        Fill({});
    }
    TreeView_SelectItem(tree_, Find(tree_, data));
}

void EffectList::SelectFirst() {
    const HTREEITEM family = TreeView_GetRoot(tree_);
    if (family != nullptr) {
        TreeView_SelectItem(tree_, TreeView_GetChild(tree_, family));
    }
}

std::optional<std::size_t> EffectList::Selected() const {
    const HTREEITEM item = TreeView_GetSelection(tree_);
    const LPARAM data = item != nullptr ? DataOf(tree_, item) : kFamily;
    return data == kFamily ? std::nullopt : std::optional(static_cast<std::size_t>(data));
}
