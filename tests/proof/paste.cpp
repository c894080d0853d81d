#include "proof/proof.h"
#define Arguments PasteArguments
#include "api/paste_image_test.cpp"
#undef Arguments

namespace test {
bool ProvePaste(const Proved& p) {
    if (!p.Is("QV8PasteImage")) {
        return false;
    }
    const bool isClear = p.each.arguments.values[6].pointer != nullptr;
    const BYTE* const clear = p.each.arguments.clear;
    const PasteArguments arguments = {p.Number(2),
                                      p.Number(3),
                                      p.Number(4),
                                      p.Low(5),
                                      isClear ? std::optional<Colour>(Colour{clear[2], clear[1], clear[0]})
                                              : std::nullopt,
                                      p.Number(9),
                                      p.Number(10),
                                      static_cast<DWORD>(p.Number(11))};
    const auto tableIsRamp = [](const Picture& picture) {
        std::set<int> levels;
        for (std::size_t i = 0; picture.Bits() == 8 && picture.ColourCount() == 256 && i != 256; ++i) {
            const BYTE* const entry = picture.TableEntry(i);
            levels.insert(entry[0] == entry[1] && entry[1] == entry[2] ? entry[0] : -1);
        }
        return levels.size() == 256 && levels.count(-1) == 0;
    };
    const Slow slow = {p.Source(), p.Second(), p.each.call.target.hMask != nullptr ? &p.Mask() : nullptr,
                       tableIsRamp(p.Second()), arguments};
    EXPECT_TRUE(Holds(p.image, SlowlyPasted(slow)));
    return true;
}
} // namespace test
