#pragma once

#include "CoreMinimal.h"

class SWidget;
struct FKestrelLink;

/** Whoever follows a link sees first where it leads, since its text can say anything. */
namespace KestrelLinkMenu
{
/** Opens a menu with the address and what can be done with it. A file of the project opens at once. */
void Show(const TSharedRef<SWidget>& Owner, const FKestrelLink& Link, const FVector2D& ScreenPosition);
}
