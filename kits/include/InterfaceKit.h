#ifndef _INTERFACE_KIT_H
#define _INTERFACE_KIT_H

// Everything of the Interface Kit.

#include <Accelerant.h>
#include <AffineTransform.h>
#include <Alert.h>
#include <Alignment.h>
#include <Bitmap.h>
#include <Box.h>
#include <Button.h>
#include <CheckBox.h>
#include <Control.h>
#include <Deskbar.h>
#include <Font.h>
#include <Gradient.h>
#include <GradientConic.h>
#include <GradientDiamond.h>
#include <GradientLinear.h>
#include <GradientRadial.h>
#include <GradientRadialFocus.h>
#include <GraphicsDefs.h>
#include <Input.h>
#include <InterfaceDefs.h>
#include <ListItem.h>
#include <ListView.h>
#include <Menu.h>
#include <MenuItem.h>
#include <OutlineListView.h>
#include <Picture.h>
#include <Point.h>
#include <Polygon.h>
#include <PopUpMenu.h>
#include <RadioButton.h>
#include <Rect.h>
#include <Region.h>
#include <Screen.h>
#include <ScrollBar.h>
#include <ScrollView.h>
#include <SeparatorItem.h>
#include <Shape.h>
#include <Size.h>
#include <Slider.h>
#include <StatusBar.h>
#include <StringItem.h>
#include <StringView.h>
#include <TabView.h>
#include <TextControl.h>
#include <TextView.h>
#include <UnicodeBlockObjects.h>
#include <View.h>
#include <Window.h>

#endif  // _INTERFACE_KIT_H
