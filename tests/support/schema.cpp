#include "tests/support/schema.h"

#include <QFile>

#include <rapidjson/document.h>
#include <valijson/adapters/rapidjson_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include <map>

using namespace Qt::Literals::StringLiterals;

namespace {

bool parse(const QByteArray& json, rapidjson::Document& document)
{
    document.Parse(json.constData(), static_cast<std::size_t>(json.size()));
    return !document.HasParseError();
}

// Parsed once for each file.
const valijson::Schema* schemaIn(const QString& name)
{
    static std::map<QString, valijson::Schema> schemas;
    if (const auto known = schemas.find(name); known != schemas.end())
        return &known->second;
    QFile file(name);
    rapidjson::Document document;
    if (!file.open(QIODevice::ReadOnly) || !parse(file.readAll(), document))
        return nullptr;
    valijson::SchemaParser parser;
    valijson::Schema& schema = schemas[name];
    parser.populateSchema(valijson::adapters::RapidJsonAdapter(document), schema);
    return &schema;
}

} // namespace

QString schemaProblem(const QString& schemaFile, const QByteArray& json)
{
    const valijson::Schema* schema = schemaIn(schemaFile);
    if (!schema)
        return schemaFile + u" is not a schema"_s;
    rapidjson::Document document;
    if (!parse(json, document))
        return u"not JSON"_s;
    valijson::Validator validator;
    valijson::ValidationResults results;
    if (validator.validate(*schema, valijson::adapters::RapidJsonAdapter(document), &results))
        return {};
    QString problems;
    for (const auto& result : results)
        problems += QString::fromStdString(result.description) + u'\n';
    return problems;
}
