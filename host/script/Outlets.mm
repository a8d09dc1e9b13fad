#include "Outlets.h"

#include "Json.h"

#include <cstdlib>
#include <cstring>
#include <objc/runtime.h>

std::vector<std::string> outletNames(id owner)
{
    std::vector<std::string> names;
    unsigned count = 0;
    Ivar* variables = owner != nil ? class_copyIvarList([owner class], &count) : nullptr;
    for (unsigned i = 0; i < count; ++i)
        if (ivar_getTypeEncoding(variables[i])[0] == '@' && object_getIvar(owner, variables[i]) != nil)
            names.emplace_back(ivar_getName(variables[i]));
    free(variables);
    return names;
}

id outletNamed(id owner, const std::string& name)
{
    Ivar variable = owner != nil ? class_getInstanceVariable([owner class], name.c_str()) : nullptr;
    if (variable == nullptr || ivar_getTypeEncoding(variable)[0] != '@')
        return nil;
    return object_getIvar(owner, variable);
}

std::string outletNameOf(id owner, id object)
{
    for (const std::string& name : outletNames(owner))
        if (outletNamed(owner, name) == object)
            return name;
    return "";
}

int integerNamed(id owner, const std::string& name)
{
    Ivar variable = owner != nil ? class_getInstanceVariable([owner class], name.c_str()) : nullptr;
    if (variable == nullptr || strcmp(ivar_getTypeEncoding(variable), @encode(int)) != 0)
        return 0;
    int value = 0;
    memcpy(&value, reinterpret_cast<const char*>((void*)owner) + ivar_getOffset(variable), sizeof value);
    return value;
}

std::string shortClassName(id object)
{
    std::string name = object != nil ? textOf(NSStringFromClass([object class])) : "";
    return name.substr(0, name.find('_'));
}
