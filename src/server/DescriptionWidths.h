#pragma once

// How many characters of an item line's two descriptions the ECR model
// prints; the receipt server wraps long descriptions to fit.
namespace kelm::server {

struct DescriptionWidths {
    int first = 0;
    int second = 0;
};

} // namespace kelm::server
