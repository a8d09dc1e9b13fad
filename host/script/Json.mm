#include "Json.h"

#include <cstring>

Json errorAnswer(const std::string& reason)
{
    return {{"error", reason}};
}

static Json jsonOfNumber(NSNumber* number)
{
    const char* type = [number objCType];
    if (strcmp(type, @encode(BOOL)) == 0)
        return [number boolValue] != 0;
    if (strcmp(type, @encode(double)) == 0 || strcmp(type, @encode(float)) == 0)
        return [number doubleValue];
    return [number longLongValue];
}

Json jsonOf(id object)
{
    if ([object isKindOfClass:[NSString class]])
        return textOf(object);
    if ([object isKindOfClass:[NSNumber class]])
        return jsonOfNumber(object);
    if ([object isKindOfClass:[NSDate class]])
        return textOf([object description]);
    if ([object isKindOfClass:[NSData class]])
        return textOf([object base64EncodedStringWithOptions:0]);
    if ([object isKindOfClass:[NSArray class]]) {
        Json array = Json::array();
        for (id element in (NSArray*)object)
            array.push_back(jsonOf(element));
        return array;
    }
    if (![object isKindOfClass:[NSDictionary class]])
        return nullptr;
    Json dictionary = Json::object();
    for (id key in [[object allKeys] sortedArrayUsingSelector:@selector(compare:)])
        dictionary[textOf([key description])] = jsonOf([object objectForKey:key]);
    return dictionary;
}
