#include "bookmarks/HistoryEntries_p.h"

#include "bookmarks/HistoryElements_p.h"
#include "core/Entries_p.h"
#include "core/NodeView_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLSetting.h"
#include "text/TimeText_p.h"

#include <algorithm>

using namespace vlm;

namespace
{
QString textOf(VLMC_XMLNode *node) { return node ? node->getText() : QString(); }

// True for an element of this name without attributes and children whose text, if any, is plain.
bool isPlainField(VLMC_XMLNode *node, const char *name)
{
    return NodeView::isNamed(*node, QLatin1String(name)) && node->getTextType() == PlainText
           && NodeView::children(*node).isEmpty() && NodeView::attributes(*node).isEmpty();
}
} // namespace

QVector<vlm::history::Visit> vlm::history::visitsNewestFirst(const QList<VLMC_XMLNode *> &entries)
{
    ClockOrder clock;
    QVector<Visit> visits;
    visits.reserve(int(entries.size()));
    for (VLMC_XMLNode *const entry : entries) {
        if (entry) {
            visits.append({entry, clock.of(textOf(childNamed(entry, kDateTime)))});
        }
    }
    const auto newerFirst = [](const Visit &left, const Visit &right) {
        return left.clock > right.clock;
    };
    if (!std::is_sorted(visits.constBegin(), visits.constEnd(), newerFirst)) {
        std::stable_sort(visits.begin(), visits.end(), newerFirst);
    }
    return visits;
}

bool vlm::history::isPlain(const Visit &visit)
{
    const QList<VLMC_XMLNode *> &fields = NodeView::children(*visit.entry);
    return NodeView::isNamed(*visit.entry, QLatin1String(kEntry))
           && visit.entry->getText().isEmpty() && visit.entry->getTextType() == PlainText
           && fields.size() == 3 && isPlainField(fields.at(0), kTitle)
           && isPlainField(fields.at(1), kUrl) && isPlainField(fields.at(2), kDateTime)
           && (visit.clock != ClockOrder::NoTime || fields.at(2)->getText().isEmpty());
}

vlm::history::Texts vlm::history::textsOf(const Visit &visit)
{
    return {textOf(childNamed(visit.entry, kTitle)), textOf(childNamed(visit.entry, kUrl)),
            visit.clock == ClockOrder::NoTime ? QString()
                                              : textOf(childNamed(visit.entry, kDateTime))};
}

QVector<vlm::history::Texts> vlm::history::textsOf(const QVector<Visit> &visits)
{
    QVector<Texts> texts;
    texts.reserve(int(visits.size()));
    for (const Visit &visit : visits) {
        texts.append(textsOf(visit));
    }
    return texts;
}

int vlm::history::indexOfUrl(const QList<VLMC_XMLNode *> &entries, const QString &url)
{
    const QString none = QString();
    const QString *compared = &none;
    return firstEntry(entries, kUrl, [&](VLMC_XMLNode *entry, VLMC_XMLNode *field) {
        compared = field ? &field->getText() : compared;
        return entry && *compared == url;
    });
}

VLMC_XMLNode *vlm::history::addVisit(VLMC_XMLSetting &store, const Texts &visit, char place)
{
    VLMC_XMLNode *const entry =
        addElement(store, store.getXMLRootNode(), kEntry, QString(), PlainText, place);
    if (!entry) {
        return nullptr;
    }
    addElement(store, entry, kTitle, visit.title, PlainText, AtEnd);
    addElement(store, entry, kUrl, visit.url, PlainText, AtEnd);
    addElement(store, entry, kDateTime, visit.time, PlainText, AtEnd);
    return entry;
}
