#include "tests/program/Learner.h"

#include <QGenericPlugin>

#include <sstream>

/// Brings a learner into a program that knows nothing of it. CRAMLET_LEARNER says how it is.
class LearnerPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "LearnerPlugin.json")

public:
    QObject *create(const QString & /*name*/, const QString & /*specification*/) override
    {
        std::istringstream words(qgetenv("CRAMLET_LEARNER").toStdString());
        Character character{};
        words >> character.ear >> character.seed >> character.letters >> character.diligence;
        return words ? new Learner(character) : nullptr;
    }
};

#include "LearnerPlugin.moc"
