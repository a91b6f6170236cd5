#include "technician/ModelTable.h"

namespace kelm::technician {

namespace {

constexpr std::array<bool, 26> kAllSFlags = [] {
    std::array<bool, 26> flags{};
    flags.fill(true);
    return flags;
}();

constexpr std::array<bool, 14> kAllFeatures = [] {
    std::array<bool, 14> features{};
    features.fill(true);
    return features;
}();

constexpr std::array<bool, 14> kSmallModelFeatures = {
    true, true, true, false, false, true, false, true, false, false, true, true, false, true};

ModelInfo model(const char* name, const char* code, qint16 payments, qint16 departments,
                qint16 plus, const std::array<bool, 14>& features, qint16 firstWidth)
{
    ModelInfo m;
    m.name = QString::fromLatin1(name);
    m.code = QString::fromLatin1(code);
    m.headerLines = 12;
    m.footerLines = 3;
    m.leadingSwitches = {true, true};
    m.paymentTypes = payments;
    m.scrollingMessages = 10;
    m.sFlagAvailable = kAllSFlags;
    m.departmentLimit = departments;
    m.pluLimit = plus;
    m.featureSwitches = features;
    m.firstDescriptionWidth = firstWidth;
    m.secondDescriptionWidth = 30;
    return m;
}

} // namespace

QList<ModelInfo> setupModelli()
{
    return {
        model("Kelm Brio", "QA", 9, 20, 9000, kAllFeatures, 20),
        model("Velt", "QC", 10, 10, 1000, kSmallModelFeatures, 30),
        model("", "QB", 10, 10, 1000, kSmallModelFeatures, 20),
    };
}

std::optional<ModelInfo> findModel(const QString& name)
{
    for (const ModelInfo& m : setupModelli())
        if (m.name == name)
            return m;
    return std::nullopt;
}

server::DescriptionWidths descriptionWidthsFor(const QString& modelName)
{
    const std::optional<ModelInfo> m = findModel(modelName);
    if (!m)
        return {};
    return {m->firstDescriptionWidth, m->secondDescriptionWidth};
}

} // namespace kelm::technician
