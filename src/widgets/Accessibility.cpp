#include "widgets/Accessibility.h"

#include <QAccessibleWidget>

namespace {

/// What the widget library has no role for: a widget of ours.
class PlainWidget : public QAccessibleWidget
{
public:
    explicit PlainWidget(QWidget *widget) : QAccessibleWidget(widget) {}

    QAccessible::Role role() const override
    {
        // It becomes a window, or part of another one, when it is shown.
        if (widget()->isWindow())
            return widget()->windowType() == Qt::Dialog ? QAccessible::Dialog : QAccessible::Window;
        if (qobject_cast<Grouping *>(widget()))
            return QAccessible::Grouping;
        // What has a name and is painted by the program shows something; without a role readers pass it over.
        return widget()->accessibleName().isEmpty() ? QAccessibleWidget::role() : QAccessible::Graphic;
    }
};

QAccessibleInterface *makeInterface(const QString &className, QObject *object)
{
    // Classes are asked for from the object's own upwards: those of the library that have a role never come here.
    auto *widget = qobject_cast<QWidget *>(object);
    return widget && className == QLatin1String("QWidget") ? new PlainWidget(widget) : nullptr;
}

} // namespace

void installAccessibility()
{
    QAccessible::installFactory(&makeInterface);
}
