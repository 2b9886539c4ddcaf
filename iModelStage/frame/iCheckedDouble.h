#ifndef IMODELSTAGE_FRAME_ICHECKEDDOUBLE_H
#define IMODELSTAGE_FRAME_ICHECKEDDOUBLE_H

// A number with a switch, shown by an editor as a check box and a field.
class iCheckedDouble {
public:
    iCheckedDouble() = default;
    iCheckedDouble(bool checked, double value) : checked(checked), value(value) {}

    bool operator!=(iCheckedDouble const& other) const { return checked != other.checked || value != other.value; }
    bool operator==(iCheckedDouble const& other) const { return !(*this != other); }

    bool checked = false;
    double value = 0.0;
};

#endif
