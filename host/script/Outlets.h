#pragma once

#import <Foundation/Foundation.h>
#include <string>
#include <vector>

// Looking into the plug-in's objects by the names of their instance variables: what the interface file
// connects is known by these names only.

/// The object in the variable `name`; nil when there is no such variable or it is empty.
id outletNamed(id owner, const std::string& name);

/// The name of the first variable of `owner` that holds `object`; "" when none does.
std::string outletNameOf(id owner, id object);

/// Names of all variables of `owner`'s own class that hold an object.
std::vector<std::string> outletNames(id owner);

/// The 32-bit integer in the variable `name`; 0 when there is none.
int integerNamed(id owner, const std::string& name);

/// The class name as the sources write it, without the plug-in's suffix.
std::string shortClassName(id object);
