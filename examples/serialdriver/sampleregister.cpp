#include "examples/serialdriver/sampleregister.h"

#include "examples/serialdriver/sampledriver.h"

SampleRegister::SampleRegister()
    : BasicFiscalRegister(QSharedPointer<BasicFrSettings>::create(), nullptr)
{
}

// The driver borrows the line, so it goes before the line does.
SampleRegister::~SampleRegister()
{
    delete legacyDriver;
    legacyDriver = nullptr;
}

void SampleRegister::setAnswerTime(int milliseconds)
{
    constexpr int shortest = 10;
    constexpr int longest = 60000;
    if (milliseconds >= shortest && milliseconds <= longest)
        answerTime = milliseconds;
}

void SampleRegister::init()
{
    line = std::make_unique<SerialLine>(port);
    legacyDriver = new SampleDriver(line.get(), settings.data(), std::chrono::milliseconds(answerTime));
}

QVariant SampleRegisterFactory::getObject() const
{
    return QVariant::fromValue(new SampleRegister);
}
