// The library's own sources see some of what hosts and drivers use as a mere name, or not at all: a
// debugger's information about it is written where it is used.
#include "frbase/basicfiscalregister.h"
#include "frbase/basicfrdriver.h"
#include "frbase/basicfrsettings.h"
#include "host/export.h"
#include "host/records/driveroptions.h"
#include "host/records/driverrecords.h"
#include "host/records/efrdriver.h"
#include "host/records/fiscalinfo.h"
#include "host/records/frpayment.h"

HOST_EXPORT void describeRecords(FrPayment&, MoneyCounters&, Font&, Barcode&, Logo&, FrUser&, FrPrintData&,
    MarkedPosition&, RegistrationReason, FiscalInfo&, FnInfo&, OfdStatusInfo&, KkmRegisters&, FnDocument&)
{
}

HOST_EXPORT void describeEnumerations(EFrDriver::PaymentMethod, EFrDriver::PaymentObject,
    EFrDriver::RequisiteTypes, EFrDriver::RebootMode, EFrDriver::FontTypes, hw::fr::Option, hw::fr::CheckType)
{
}

HOST_EXPORT void describeDrivers(BasicFrDriver&, hw::BasicFiscalRegister&, BasicFrSettings&) {}
