#include "emulator/api/rules.h"

namespace emulator {

Json rulesOf(const Service& service)
{
    const ServiceOptions& options = service.settings();
    const Edition& edition = options.edition;
    Json all{{"revision", nameOf(edition.revision)}, {"strict", edition.strict}};
    all.update(service.rules().list());
    all["later"] = lateRules(edition);
    all["names"] = listed(options.lists);
    return all;
}

} // namespace emulator
