// The effects by family, with a field to search them.
#ifndef QV8_WINDOW_EFFECT_LIST_H
#define QV8_WINDOW_EFFECT_LIST_H

#include <optional>
#include <string>

#include <qv8platform.h>

class EffectList {
public:
    explicit EffectList(HWND parent);

    // Draws nothing yet.
    void Place(int left, int top, int width, int height, int searchHeight, int gap);
    void UseFont(HFONT font);
    // Shows what is found by the text of the field.
    void Filter();
    // Marks an effect by its place in the catalogue. Without its being found the search is given up.
    void Select(std::size_t index);
    // The place in the catalogue of the marked effect; nothing for a family.
    std::optional<std::size_t> Selected() const;
    // Marks the first effect of the list.
    void SelectFirst();
    bool IsFilling() const {
        return isFilling_;
    }
    HWND Search() const {
        return search_;
    }
    HWND Tree() const {
        return tree_;
    }

private:
    void Fill(const std::string& search);

    HWND search_;
    HWND tree_;
    bool isFilling_ = false;
};

#endif
