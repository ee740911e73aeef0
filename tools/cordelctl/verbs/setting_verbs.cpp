// pcl: the settings of the PCL filter.

#include "platform/bounded_text.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

namespace {

/// As hosts get them: the number at the beginning of a text, and 0 where there is none.
Result PrintSettings(Context& context) {
    CDocument& document = context.Document();
    RequireSound(document, "PCLCurrentSetting");
    const std::vector<Row> rows = document.RowsOrNone("PCLCurrentSetting");
    Result result;
    result.shape = Result::Shape::Record;
    for (const AttributeSchema& setting : Schema("PCLCurrentSetting").attributes) {
        const auto value = document.FirstValue("PCLCurrentSetting", setting.name);
        result.data.Add(std::string(setting.name), platform::LenientInteger(value.value_or("")));
        if (!value) {
            result.notes.push_back(std::string(setting.name) + " is missing, and 0 for hosts");
        }
    }
    return result;
}

} // namespace

std::vector<Verb> SettingVerbs() {
    return {{"pcl",
             "Show the PCL filter settings, as hosts get them",
             Effect::Reads,
             &PrintSettings,
             {},
             {},
             "cordelctl pcl\ncordelctl set PCLCurrentSetting CMCOPIES 3"}};
}
