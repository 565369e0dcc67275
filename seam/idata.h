// The base of every trading record: a text key, a BSON form and a field
// descriptor by which tables name columns and enum items. Records list their
// fields once (describe()); TData derives serialisation, comparison and the
// descriptor from that list, so a field cannot be forgotten in one of them.
#pragma once

#include "seam/bson.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

namespace nqservice {

// Value kinds of a field, as a table needs them to pick a cell type.
enum EFieldType {
    FT_UNKNOWN = 0,
    FT_BOOL = 1,
    FT_INT = 2,
    FT_LONGLONG = 3,
    FT_DOUBLE = 4,
    FT_STRING = 5,
    FT_OBJECT = 6,
    FT_ARRAY = 7,
    FT_BSON = 8,
    FT_MAP = 9,
};

// Properties of a field, asked by number through FieldDes::getProperty.
enum EFieldProperty {
    FP_STAT = 1,          // a column that sums in a statistics row
    FP_ALIGN_LEFT = 2,
    FP_ALIGN_CENTER = 3,
    FP_KEY = 8,           // part of the record's identity
    FP_DISPLAY = 11,      // shown as a column by default
};

constexpr unsigned fieldProps(std::initializer_list<int> properties)
{
    unsigned mask = 0;
    for (int property : properties) {
        mask |= 1u << property;
    }
    return mask;
}

struct FieldDes {
    int id = 0;               // position in the record, from 1
    std::string name;         // BSON and JSON name
    std::string chsName;      // column header
    int type = FT_UNKNOWN;    // EFieldType
    std::string enumName;     // full name of the enum of an enum field, else ""
    unsigned properties = 0;  // bit n set: property n holds

    bool getProperty(int property) const
    {
        return property >= 0 && property < 32 && (properties & (1u << property)) != 0;
    }
};

struct StructDes {
    std::string name;  // "nqservice::COrderDetail"
    int dataType = 0;  // EVQ_DATA_TYPE of the table that holds such records, 0 if none
    std::vector<FieldDes> fields;

    const FieldDes* findField(const std::string& fieldName) const
    {
        for (const FieldDes& field : fields) {
            if (field.name == fieldName) {
                return &field;
            }
        }
        return nullptr;
    }
};

class IData {
public:
    virtual ~IData() = default;

    // The record's unique text key; for an account, the key it is found by everywhere.
    virtual std::string getKey() const = 0;
    virtual std::string toString() const = 0;
    virtual bool isEqual(const IData* other) const = 0;
    virtual bson::BSONObj toBsonWithBson() const = 0;
    // Reads the fields present in obj. With reset, the fields obj lacks take the
    // values of base (when it is a record of the same class) or the defaults;
    // without it they keep their values. Never throws: a field of the wrong kind
    // is left as it was.
    virtual void bsonValueFromObj(bson::BSONObj obj, bool reset, const IData* base) = 0;
    virtual boost::shared_ptr<IData> copy() const = 0;
    virtual StructDes* getStructDes() const = 0;
};

typedef boost::shared_ptr<IData> IDataPtr;

namespace detail {

template <typename T>
struct IsSharedPtr : std::false_type {};
template <typename T>
struct IsSharedPtr<boost::shared_ptr<T>> : std::true_type {
    using element = T;
};
template <typename T>
struct IsVector : std::false_type {};
template <typename T>
struct IsVector<std::vector<T>> : std::true_type {
    using element = T;
};
template <typename T>
struct IsStringMap : std::false_type {};
template <typename V>
struct IsStringMap<std::map<std::string, V>> : std::true_type {
    using element = V;
};

template <typename T>
constexpr int fieldTypeOf()
{
    if constexpr (std::is_same_v<T, bool>) {
        return FT_BOOL;
    } else if constexpr (std::is_enum_v<T> || std::is_same_v<T, int> || std::is_same_v<T, unsigned> ||
                         std::is_same_v<T, char> || std::is_same_v<T, unsigned char>) {
        return FT_INT;
    } else if constexpr (std::is_same_v<T, long long>) {
        return FT_LONGLONG;
    } else if constexpr (std::is_same_v<T, double>) {
        return FT_DOUBLE;
    } else if constexpr (std::is_same_v<T, std::string>) {
        return FT_STRING;
    } else if constexpr (std::is_same_v<T, bson::BSONObj>) {
        return FT_BSON;
    } else if constexpr (IsVector<T>::value) {
        return FT_ARRAY;
    } else if constexpr (IsStringMap<T>::value) {
        return FT_MAP;
    } else if constexpr (IsSharedPtr<T>::value || std::is_base_of_v<IData, T>) {
        return FT_OBJECT;
    } else {
        return FT_UNKNOWN;
    }
}

template <typename T>
void appendValue(bson::BSONObjBuilder& builder, const std::string& name, const T& value);
template <typename T>
bool readValue(const bson::BSONElement& element, T& value);

template <typename T>
void appendArrayValue(bson::BSONArrayBuilder& builder, const T& value)
{
    bson::BSONObjBuilder holder;
    appendValue(holder, "v", value);
    bson::BSONObj wrapped = holder.obj();
    builder.append(wrapped.firstElement());
}

template <typename T>
void appendValue(bson::BSONObjBuilder& builder, const std::string& name, const T& value)
{
    if constexpr (std::is_same_v<T, bool>) {
        builder.appendBool(name, value);
    } else if constexpr (std::is_enum_v<T> || std::is_same_v<T, char> || std::is_same_v<T, unsigned char>) {
        builder.append(name, static_cast<int>(value));
    } else if constexpr (std::is_same_v<T, unsigned>) {
        builder.append(name, static_cast<long long>(value));
    } else if constexpr (std::is_same_v<T, int> || std::is_same_v<T, long long> || std::is_same_v<T, double> ||
                         std::is_same_v<T, std::string>) {
        builder.append(name, value);
    } else if constexpr (std::is_same_v<T, bson::BSONObj>) {
        builder.append(name, value);
    } else if constexpr (IsSharedPtr<T>::value) {
        if (value) {
            appendValue(builder, name, *value);
        } else {
            builder.appendNull(name);
        }
    } else if constexpr (std::is_base_of_v<IData, T>) {
        builder.append(name, value.toBsonWithBson());
    } else if constexpr (IsVector<T>::value) {
        bson::BSONArrayBuilder array(builder.subarrayStart(name));
        for (const auto& item : value) {
            appendArrayValue(array, item);
        }
        array.done();
    } else if constexpr (IsStringMap<T>::value) {
        bson::BSONObjBuilder sub(builder.subobjStart(name));
        for (const auto& entry : value) {
            appendValue(sub, entry.first, entry.second);
        }
        sub.done();
    } else {
        static_assert(sizeof(T) == 0, "no BSON form for this field type");
    }
}

template <typename T>
bool readValue(const bson::BSONElement& element, T& value)
{
    if constexpr (std::is_same_v<T, bool>) {
        if (element.type() == bson::Bool || element.isNumber()) {
            value = element.trueValue();
            return true;
        }
    } else if constexpr (std::is_enum_v<T> || std::is_same_v<T, int> || std::is_same_v<T, char> ||
                         std::is_same_v<T, unsigned char>) {
        if (element.isNumber()) {
            value = static_cast<T>(element.numberInt());
            return true;
        }
    } else if constexpr (std::is_same_v<T, unsigned>) {
        if (element.isNumber()) {
            value = static_cast<unsigned>(element.numberLong());
            return true;
        }
    } else if constexpr (std::is_same_v<T, long long>) {
        if (element.isNumber()) {
            value = element.numberLong();
            return true;
        }
    } else if constexpr (std::is_same_v<T, double>) {
        if (element.isNumber()) {
            value = element.numberDouble();
            return true;
        }
    } else if constexpr (std::is_same_v<T, std::string>) {
        if (element.type() == bson::String) {
            value = element.str();
            return true;
        }
    } else if constexpr (std::is_same_v<T, bson::BSONObj>) {
        if (element.type() == bson::Object) {
            value = element.embeddedObject().getOwned();
            return true;
        }
    } else if constexpr (IsSharedPtr<T>::value) {
        using Element = typename IsSharedPtr<T>::element;
        if (element.isNull()) {
            value.reset();
            return true;
        }
        if (element.type() == bson::Object) {
            auto record = boost::make_shared<Element>();
            record->bsonValueFromObj(element.embeddedObject(), true, nullptr);
            value = record;
            return true;
        }
    } else if constexpr (std::is_base_of_v<IData, T>) {
        if (element.type() == bson::Object) {
            value.bsonValueFromObj(element.embeddedObject(), true, nullptr);
            return true;
        }
    } else if constexpr (IsVector<T>::value) {
        if (element.type() == bson::Array) {
            T items;
            bson::BSONObjIterator it(element.embeddedObject());
            while (it.more()) {
                typename IsVector<T>::element item{};
                if (readValue(it.next(), item)) {
                    items.push_back(item);
                }
            }
            value.swap(items);
            return true;
        }
    } else if constexpr (IsStringMap<T>::value) {
        if (element.type() == bson::Object) {
            T entries;
            bson::BSONObjIterator it(element.embeddedObject());
            while (it.more()) {
                bson::BSONElement item = it.next();
                typename IsStringMap<T>::element entry{};
                if (readValue(item, entry)) {
                    entries[item.fieldName()] = entry;
                }
            }
            value.swap(entries);
            return true;
        }
    }
    return false;
}

// Visitors over the describe() list of a record.
struct DesBuilder {
    StructDes* des;
    template <typename T>
    void operator()(const char* name, const char* chsName, const T&, unsigned properties = 0,
                    const char* enumName = "")
    {
        FieldDes field;
        field.id = static_cast<int>(des->fields.size()) + 1;
        field.name = name;
        field.chsName = chsName;
        field.type = fieldTypeOf<T>();
        field.enumName = enumName;
        field.properties = properties;
        des->fields.push_back(field);
    }
};

struct BsonWriter {
    bson::BSONObjBuilder* builder;
    template <typename T>
    void operator()(const char* name, const char*, const T& value, unsigned = 0, const char* = "")
    {
        appendValue(*builder, name, value);
    }
};

struct BsonReader {
    const bson::BSONObj* obj;
    bool reset;
    template <typename T, typename B>
    void read(const char* name, T& value, const B& fallback)
    {
        bson::BSONElement element = obj->getField(name);
        if (!element.eoo() && readValue(element, value)) {
            return;
        }
        if (reset) {
            value = fallback;
        }
    }
};

}  // namespace detail

// The common part of the records. Derived names itself in
//   static constexpr const char* kStructName = "nqservice::CName";
// and lists its fields in
//   template <class S, class V> static void describe(S& self, V& visit)
// calling visit(name, chsName, self.field[, properties[, enumName]]) for each, in order.
template <typename Derived, int DataType = 0>
class TData : public IData {
public:
    static const char* structName() { return Derived::kStructName; }

    std::string toString() const override
    {
        return std::string(structName()) + toBsonWithBson().jsonString();
    }
    bool isEqual(const IData* other) const override
    {
        if (other == nullptr || typeid(*other) != typeid(Derived)) {
            return false;
        }
        return toBsonWithBson().binaryEqual(other->toBsonWithBson());
    }
    bson::BSONObj toBsonWithBson() const override
    {
        bson::BSONObjBuilder builder;
        detail::BsonWriter writer{&builder};
        Derived::describe(self(), writer);
        return builder.obj();
    }
    void bsonValueFromObj(bson::BSONObj obj, bool reset, const IData* base) override
    {
        const Derived defaults;
        const auto* typedBase = base != nullptr && typeid(*base) == typeid(Derived)
                                    ? static_cast<const Derived*>(base)
                                    : &defaults;
        ReadPass pass{detail::BsonReader{&obj, reset}, typedBase};
        Derived::describe(self(), pass);
    }
    boost::shared_ptr<IData> copy() const override { return boost::make_shared<Derived>(self()); }
    StructDes* getStructDes() const override { return staticStructDes(); }

    static StructDes* staticStructDes()
    {
        static StructDes* des = [] {
            auto* built = new StructDes;
            built->name = structName();
            built->dataType = DataType;
            detail::DesBuilder builder{built};
            const Derived sample;
            Derived::describe(sample, builder);
            return built;
        }();
        return des;
    }

private:
    const Derived& self() const { return static_cast<const Derived&>(*this); }
    Derived& self() { return static_cast<Derived&>(*this); }

    // Reads one field, taking its fallback from the same field of the base record.
    struct ReadPass {
        detail::BsonReader reader;
        const Derived* base;
        std::size_t index = 0;
        template <typename T>
        void operator()(const char* name, const char*, T& value, unsigned = 0, const char* = "")
        {
            // The base's field of the same position: describe() visits in one order.
            const T* fallback = nullptr;
            FieldFinder<T> finder{index++, &fallback};
            Derived::describe(*base, finder);
            reader.read(name, value, fallback != nullptr ? *fallback : T{});
        }
    };
    template <typename T>
    struct FieldFinder {
        std::size_t wanted;
        const T** found;
        std::size_t index = 0;
        template <typename U>
        void operator()(const char*, const char*, const U& value, unsigned = 0, const char* = "")
        {
            if constexpr (std::is_same_v<T, U>) {
                if (index == wanted) {
                    *found = &value;
                }
            }
            ++index;
        }
    };
};

}  // namespace nqservice
