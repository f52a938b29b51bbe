// SPDX-License-Identifier: Apache-2.0
//
// Calls of two loaders of the same library, byte by byte, against what their phases allow.
#include "../fuzztarget.h"

#include <QtCore/QDir>

#include <kora/host.h>

using namespace KORA::INTERNAL;

namespace {

const QString library = QStringLiteral(KORA_FUZZ_PLUGIN);
const QString pluginDir = QDir::cleanPath(library + QStringLiteral("/../../.."));
const QString pluginsDir = QDir::cleanPath(pluginDir + QStringLiteral("/.."));
const QString pluginId = QDir(pluginDir).dirName();

class CheckedLoader
{
public:
    void call(int number)
    {
        const bool mayLoad = !m_isInit && !m_isLoaded;
        switch (number) {
        case 0:
            m_isLoaded = expected(m_loader.loadFromDir(pluginsDir, {}), mayLoad) || m_isLoaded;
            break;
        case 1:
            m_isLoaded = expected(m_loader.loadFromPluginDir(pluginDir), mayLoad) || m_isLoaded;
            break;
        case 2:
            if (mayLoad) { // a record that is there would be replaced and not destroyed
                m_isLoaded = expected(m_loader.loadFromPluginPath(library, QString()), true);
            }
            break;
        case 3:
            expected(m_loader.loadFromDir(pluginsDir, {pluginId}), !m_isInit);
            expected(m_loader.loadFromPluginPath(library, QStringLiteral("another")), false);
            expected(m_loader.loadFromPluginPath(pluginDir, QString()), false);
            break;
        case 4:
            m_isInit = expected(m_loader.init(), m_isLoaded && !m_isInit) || m_isInit;
            break;
        case 5:
            m_isInit = !expected(m_loader.deinit(), m_isInit) && m_isInit;
            break;
        case 6:
            m_loader.unload();
            m_isInit = m_isLoaded = false;
            break;
        default:
            const QString resources = fuzzFolder() + QStringLiteral("/loader");
            expected(m_loader.generateStudioExtraResources(resources, QStringLiteral("en-US")), m_isInit);
            m_isLoaded = m_isInit; // without init() all are unloaded
        }
        expect(m_loader.isInit() == m_isInit, "inited or not");
        expect(m_loader.pluginData().contains(pluginId) == m_isLoaded, "loaded or not");
        auto *data = m_loader.pluginDataByPluginId(pluginId);
        expect(!data || data->instance()->inherits("ValveLibrary"), "the instance is gone");
    }

private:
    static bool expected(bool result, bool expectation)
    {
        expect(result == expectation, "another result");
        return result;
    }

    PluginLoader m_loader;
    bool m_isLoaded = false;
    bool m_isInit = false;
};

} // namespace

KORA_FUZZ_TARGET(loader)
{
    CheckedLoader loaders[2];
    for (const char byte : input.left(64)) {
        const int call = static_cast<unsigned char>(byte) % 16;
        loaders[call % 2].call(call / 2);
    }
}
