// The functions behind the rows of the effect table, in the order of their families.
#ifndef QV8_TOOL_EFFECT_FAMILIES_H
#define QV8_TOOL_EFFECT_FAMILIES_H

#include "effects.h"

// tone_effects.cpp
EffectCall AddRgbGamma(CLI::App& command);
EffectCall AddRgbLevel(CLI::App& command);
EffectCall AddRgbRev(CLI::App& command);
EffectCall AddYccGamma(CLI::App& command);
EffectCall AddYccLevel(CLI::App& command);
EffectCall AddYccRev(CLI::App& command);
EffectCall AddChroma(CLI::App& command);
EffectCall AddSetGray(CLI::App& command);

// convert_effects.cpp
EffectCall AddConvertColor(CLI::App& command);

// filter_effects.cpp
EffectCall AddCustomFilter(CLI::App& command);
EffectCall AddSharp(CLI::App& command);
EffectCall AddEmboss(CLI::App& command);
EffectCall AddShade(CLI::App& command);

// filter_special_effects.cpp
EffectCall AddRemoveNoise(CLI::App& command);
EffectCall AddAntiAlias(CLI::App& command);
EffectCall AddMosaic(CLI::App& command);
EffectCall AddOutline(CLI::App& command);

// select_effects.cpp
EffectCall AddSelectImage(CLI::App& command);
EffectCall AddAutoSelectImage(CLI::App& command);

// compose_effects.cpp
EffectCall AddLayer(CLI::App& command);
EffectCall AddPasteImage(CLI::App& command);
EffectCall AddPanorama(CLI::App& command);

// geometry_effects.cpp
EffectCall AddAffine(CLI::App& command);
EffectCall AddRotation(CLI::App& command);
EffectCall AddResize(CLI::App& command);

// image_effects.cpp
EffectCall AddCreateImage(CLI::App& command);
EffectCall AddCopyImage(CLI::App& command);

// hidden_effects.cpp
EffectCall AddSetSecretImage(CLI::App& command);
EffectCall AddCheckSecretImage(CLI::App& command);

#endif
