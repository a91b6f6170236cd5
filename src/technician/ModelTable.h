#pragma once

#include "server/DescriptionWidths.h"

#include <QList>
#include <QString>

#include <array>
#include <optional>

// The ECR models the program knows, and what each one has.
namespace kelm::technician {

struct ModelInfo {
    QString name;       // shown in cmbModello, stored as Modello
    QString code;       // two-letter model code
    qint16 headerLines = 0;
    qint16 footerLines = 0;
    std::array<bool, 2> leadingSwitches{};
    qint16 paymentTypes = 0;      // payment rows at or above this index are switched off
    qint16 scrollingMessages = 0; // message boxes at or above this index are switched off
    std::array<bool, 26> sFlagAvailable{};
    qint16 departmentLimit = 0;
    qint16 pluLimit = 0;
    std::array<bool, 14> featureSwitches{};
    qint16 firstDescriptionWidth = 0;
    qint16 secondDescriptionWidth = 0;
};

// The three models, in the order of the model list.
QList<ModelInfo> setupModelli();

// The model whose name equals `name` exactly; none when no model has it.
std::optional<ModelInfo> findModel(const QString& name);

// The item-description widths of the named model; 0 and 0 for an unknown
// model, which the receipt server then treats as its default width.
server::DescriptionWidths descriptionWidthsFor(const QString& modelName);

} // namespace kelm::technician
