#include "PortName.h"

namespace kelm {

bool IsVirtualDevice(const ConfigPC& config)
{
    return config.device.compare(QStringLiteral("virtual"), Qt::CaseInsensitive) == 0;
}

QString SystemPortName(const ConfigPC& config)
{
    if (!config.device.isEmpty())
        return config.device;
#ifdef Q_OS_WIN
    return config.port;
#else
    bool ok = false;
    const int n = config.port.mid(3).toInt(&ok);
    if (config.port.startsWith(QStringLiteral("Com")) && ok && n >= 1)
        return QStringLiteral("/dev/ttyS%1").arg(n - 1);
    return config.port;
#endif
}

} // namespace kelm
