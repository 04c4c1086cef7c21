#include "host/abstractfiscalregister.h"
#include "host/abstractfrdriver.h"
#include "host/abstractserialdriver.h"
#include "host/vposfrdriver.h"

// Out of line, so that the type information of each interface is in this library alone and dynamic_cast works
// between plugin and host.
AbstractFrDriver::~AbstractFrDriver() = default;
AbstractSerialDriver::~AbstractSerialDriver() = default;
VposFrDriver::~VposFrDriver() = default;
hw::AbstractFiscalRegister::~AbstractFiscalRegister() = default;
