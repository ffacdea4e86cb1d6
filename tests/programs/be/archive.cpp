// Objects in messages: a class of the program's own, and a view with children.

#include <Application.h>
#include <Archivable.h>
#include <ClassInfo.h>
#include <DataIO.h>
#include <Message.h>
#include <View.h>

#include <assert.h>
#include <string.h>

class Planet : public BArchivable {
public:
    Planet(const char* name, float mass) : fMass(mass) { strcpy(fName, name); }
    Planet(BMessage* archive) : BArchivable(archive)
    {
        strcpy(fName, archive->FindString("name"));
        fMass = archive->FindFloat("mass");
    }
    virtual status_t Archive(BMessage* into, bool deep = true) const
    {
        status_t status = BArchivable::Archive(into, deep);
        if (status == B_OK)
            status = into->AddString("name", fName);
        if (status == B_OK)
            status = into->AddFloat("mass", fMass);
        return status;
    }
    static BArchivable* Instantiate(BMessage* archive);
    const char* Name() const { return fName; }
    float Mass() const { return fMass; }

private:
    char fName[32];
    float fMass;
};

// Found by its name, so it stands outside of the class.
BArchivable* Planet::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "Planet") ? new Planet(archive) : NULL;
}

int main()
{
    BApplication app("application/x-vnd.archive-program");
    BMessage archive;
    assert(Planet("Saturn", 95.16f).Archive(&archive) == B_OK);

    // Through bytes, as to a file.
    BMallocIO stream;
    assert(archive.Flatten(&stream) == B_OK);
    stream.Seek(0, SEEK_SET);
    BMessage read;
    assert(read.Unflatten(&stream) == B_OK);
    Planet* planet = cast_as(instantiate_object(&read), Planet);
    assert(planet != NULL);
    assert(strcmp(planet->Name(), "Saturn") == 0 && planet->Mass() == 95.16f);
    delete planet;
    assert(!validate_instantiation(&read, "Moon"));

    BView* parent = new BView(BRect(0, 0, 99, 49), "parent", B_FOLLOW_ALL, B_WILL_DRAW);
    parent->AddChild(new BView(BRect(10, 10, 19, 19), "child", B_FOLLOW_NONE, 0));
    BMessage family;
    assert(parent->Archive(&family, true) == B_OK);
    delete parent;
    BView* again = dynamic_cast<BView*>(instantiate_object(&family));
    assert(again != NULL && again->Bounds() == BRect(0, 0, 99, 49));
    BView* child = again->FindView("child");
    assert(child != NULL && child->Frame() == BRect(10, 10, 19, 19));
    delete again;
    return 0;
}
