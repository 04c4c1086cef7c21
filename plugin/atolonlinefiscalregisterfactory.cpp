#include "plugin/atolonlinefiscalregisterfactory.h"

#include "plugin/atolonlinefiscalregister.h"

namespace hw {

QVariant AtolOnlineFiscalRegisterFactory::getObject() const
{
    return QVariant::fromValue(new AtolOnlineFiscalRegister);
}

} // namespace hw
