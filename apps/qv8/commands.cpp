#include "commands.h"

#include <algorithm>
#include <ostream>

#include "chains/options.h"
#include "chains/recipe.h"
#include "chains/words.h"
#include "info.h"
#include "message.h"
#include "pictures/image_file.h"
#include "progress_bar.h"

ExitCode EffectCommand::Run(std::ostream& err) {
    Words words{second, last};
    std::erase(words, "");
    const auto take = [&](const std::string& name) {
        if (words.empty()) {
            throw Failure(kExitUsage, std::string(step.effect->name) + ": " + name + " is missing");
        }
        std::string word = words.front();
        words.erase(words.begin());
        return word;
    };
    if (Setting* const picture = SecondPicture(step); picture != nullptr && picture->file.empty()) {
        Set(*picture, take(Capitals(picture->parameter->name)));
    }
    files.mayReplace = files.mayReplace || !named.empty();
    names.output = named.empty() ? take("OUTPUT") : named;
    if (!words.empty()) {
        throw Failure(kExitUsage, "\"" + words.front() + "\" is one word too many");
    }
    if (const std::string mistake = CheckStep(step); !mistake.empty()) {
        throw Failure(kExitUsage, std::string(step.effect->name) + ": " + mistake);
    }
    ProgressBar bar(quiet ? ProgressBar::Shown::kNever : ProgressBar::Shown::kOnTerminal);
    const FileReport report = RunOnFile(ReadyChain({step}, files.maxPixels), names, files, {.report = bar.AsReport()});
    for (const std::string& note : report.notes) {
        if (!quiet) {
            err << "qv8: " + OneLine(names.input + ": " + note) + "\n";
        }
    }
    return kExitOk;
}

ExitCode RunCommand::Run(std::ostream& out, std::ostream& err) {
    Recipe recipe;
    if (IsRecipeName(chain)) {
        recipe = LoadRecipe(chain);
    } else {
        recipe.chain = ParseChain(chain);
    }
    CheckChain(recipe.chain);
    batch.name = !name.empty() ? name : !recipe.name.empty() ? recipe.name : batch.name;
    batch.files.format = batch.files.format.empty() ? recipe.format : batch.files.format;
    if (!batch.files.quality) {
        batch.files.quality = recipe.quality;
    }
    batch.files.mayReplace = batch.files.mayReplace || recipe.force || !batch.output.empty();
    batch.files.progressive = batch.files.progressive || recipe.progressive;
    batch.memory = megabytes << 20;
    const bool hasInputs = !batch.inputs.names.empty() || !batch.inputs.listName.empty();
    if (batch.output.empty() == batch.outFolder.empty()) {
        throw Failure(kExitUsage, "run: either --out-dir DIR or -o FILE says where results go");
    }
    const ReadyChain ready(recipe.chain, batch.files.maxPixels);
    if (ready.TakesPicture() != hasInputs || (!hasInputs && batch.output.empty())) {
        throw Failure(kExitUsage, hasInputs
                                      ? "run: " + std::string(recipe.chain.front().effect->name) + " takes no input"
                                      : "run: FILES are missing");
    }
    return RunBatch(ready, batch, out, err);
}

// What cannot be read does not stop the others.
ExitCode InfoCommand::Run(std::ostream& out, std::ostream& err) const {
    const std::vector<InputFile> inputs = GatherInputs({names, "", false});
    ExitCode code = kExitOk;
    for (const InputFile& input : inputs) {
        try {
            const LoadedPicture loaded = LoadPicture(input.name, files.maxPixels);
            out << (json ? DescribeAsJson(input.name, loaded) : DescribePicture(input.name, loaded));
        } catch (const Failure& failure) {
            if (inputs.size() == 1 || failure.Code() == kExitCancelled) {
                throw;
            }
            err << "qv8: " + OneLine(failure.what()) + "\n";
            code = kExitSomeFailed;
        }
    }
    return code;
}

ExitCode ListEffects(std::ostream& out, std::ostream&) {
    std::size_t widest = 0;
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        widest = std::max(widest, std::string(effect.name).size());
    }
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        const std::string name = effect.name;
        if (IsOffered(effect)) {
            out << name << std::string(widest + 2 - name.size(), ' ') << effect.help << "\n";
        }
    }
    return kExitOk;
}

Setting* SecondPicture(Step& step) {
    const auto found = std::find_if(step.settings.begin(), step.settings.end(), [](const Setting& setting) {
        return catalogue::IsPicture(*setting.parameter) && setting.parameter->need == catalogue::Need::kRequired;
    });
    return found == step.settings.end() ? nullptr : &*found;
}

std::string Capitals(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return text;
}
